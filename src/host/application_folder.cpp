#include "host/application_folder.h"

#include <system_error>

#include "adapters/accounting_sql/schema.h"
#include "adapters/sqlite/schema.h"
#include "adapters/store_schema/tables.h"
#include "host/host_config.h"
#include "host/host_error.h"
#include "host/sample_company.h"
#include "reports/report_lists.h"
#include "values/atomic_file.h"
#include "values/atomic_folder.h"
#include "values/fault.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

constexpr const char* kTitle = "Application Folder";

[[noreturn]] void fail(const fs::path& folder, const std::string& why)
{
    throw HostError(kTitle, "The application folder \"" + folder.string() + "\" cannot be made: " + why + ".");
}

void require_free(const fs::path& folder)
{
    if (!fs::exists(folder)) return;
    if (!fs::is_directory(folder)) fail(folder, "there is a file of that name");
    if (!fs::is_empty(folder)) fail(folder, "it is there already and is not empty");
}

void write_config(const fs::path& folder, bool empty)
{
    HostConfig config;
    config.company = sample::kCompanyId;
    config.database = "sqlite:velora.db";
    config.accounting = "sqlite:accounting.db";
    config.user = sample::kUser;
    if (!empty) config.tax_registration = sample::kTaxRegistration;
    write_file(folder / "velora.ini", config.ini_text());
}

void make_databases(const fs::path& folder, const fs::path& samples, bool empty)
{
    const fs::path product = folder / "velora.db";
    const fs::path accounting = folder / "accounting.db";
    create_product_schema(product.string());
    create_accounting_schema(accounting.string());
    if (empty) return;
    fill_from_csv(product, stores::product_tables(), samples / "velora");
    fill_from_csv(accounting, stores::accounting_tables(), samples / "accounting");
}

void copy_definitions(const fs::path& from, const fs::path& to)
{
    for (const auto& entry : fs::directory_iterator(from)) {
        if (entry.is_regular_file()) fs::copy_file(entry.path(), to / entry.path().filename());
    }
}

/// Into the folder in the making, with the paths that hold once it stands in its place.
void write_report_lists(const fs::path& reports, const fs::path& place, ProfileFile& profiles)
{
    for (const ReportKind& kind : report_kinds()) {
        const std::string name = list_file_name(sample::kCompanyId, kind.which);
        write_default_list(profiles, kind.which, (reports / name).string(), place / "Reports");
    }
}

}  // namespace

void make_application_folder(const NewFolder& wanted, ProfileFile& lists)
{
    const fs::path place = fs::absolute(wanted.folder / "").lexically_normal().parent_path();
    try {
        require_free(place);
        AtomicFolder making(place);
        for (const char* name : {"Reports", "Export", "Log File"}) fs::create_directory(making.path() / name);
        write_config(making.path(), wanted.empty);
        make_databases(making.path(), wanted.samples, wanted.empty);
        copy_definitions(wanted.definitions, making.path() / "Reports");
        write_report_lists(making.path() / "Reports", place, lists);
        making.finish();
    } catch (const fs::filesystem_error& error) {
        fail(place, error.code().message() + " (" + error.path1().string() + ")");
    } catch (const Fault& caught) {
        fail(place, caught.description() + (caught.where().empty() ? "" : " (" + caught.where() + ")"));
    } catch (const HostError&) {
        throw;
    } catch (const std::runtime_error& error) {
        fail(place, error.what());
    }
}

}  // namespace velora
