#include "host/application_folder.h"

#include <unistd.h>

#include <array>
#include <fstream>
#include <system_error>

#include "adapters/accounting_sql/schema.h"
#include "adapters/sqlite/schema.h"
#include "host/host_config.h"
#include "host/host_error.h"
#include "host/sample/sample_company.h"
#include "session/report_lists.h"
#include "values/fault.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

constexpr const char* kTitle = "Application Folder";

[[noreturn]] void fail(const fs::path& folder, const std::string& why)
{
    throw HostError(kTitle, "The application folder \"" + folder.string() + "\" cannot be made: " + why + ".");
}

/// A folder beside its final place that is gone again unless it was moved there.
class FolderInTheMaking {
public:
    explicit FolderInTheMaking(const fs::path& place)
        : place_(place), path_(place.string() + ".making-" + std::to_string(::getpid()))
    {
        fs::create_directories(place_.parent_path());
        fs::create_directory(path_);
    }
    ~FolderInTheMaking()
    {
        std::error_code ignored;  // what cannot be removed here could not be written either
        if (!moved_) fs::remove_all(path_, ignored);
    }
    FolderInTheMaking(const FolderInTheMaking&) = delete;
    FolderInTheMaking& operator=(const FolderInTheMaking&) = delete;

    [[nodiscard]] const fs::path& path() const { return path_; }

    void move_into_place()
    {
        fs::rename(path_, place_);  // takes the place of an empty folder
        moved_ = true;
    }

private:
    fs::path place_;
    fs::path path_;
    bool moved_ = false;
};

/// The company of the new folder, for those who ask the session only for its id.
class NewCompanySession final : public AccountingSession {
public:
    NewCompanySession() { company_.CompanyID = sample::kCompanyId; }

    std::unique_ptr<View> OpenView(std::string_view view_id, std::string_view) override
    {
        throw fault::object_not_set(std::string(view_id));
    }
    const CompanyInfo& Company() override { return company_; }
    const CurrencyInfo& GetCurrency(std::string_view) override { return currency_; }
    const std::vector<ActiveApplication>& ActiveApplications() override { return applications_; }
    std::vector<AccountingError>& Errors() override { return errors_; }

private:
    CompanyInfo company_;
    CurrencyInfo currency_;
    std::vector<ActiveApplication> applications_;
    std::vector<AccountingError> errors_;
};

void require_free(const fs::path& folder)
{
    if (!fs::exists(folder)) return;
    if (!fs::is_directory(folder)) fail(folder, "there is a file of that name");
    if (!fs::is_empty(folder)) fail(folder, "it is there already and is not empty");
}

void write_config(const fs::path& folder)
{
    HostConfig config;
    config.company = sample::kCompanyId;
    config.database = "sqlite:velora.db";
    config.accounting = "sqlite:accounting.db";
    config.user = sample::kUser;
    std::ofstream file(folder / "velora.ini", std::ios::binary);
    file << config.ini_text();
    file.close();
    if (!file) throw std::runtime_error("velora.ini cannot be written");
}

void make_databases(const fs::path& folder, bool empty)
{
    const fs::path product = folder / "velora.db";
    const fs::path accounting = folder / "accounting.db";
    create_product_schema(product.string());
    create_accounting_schema(accounting.string());
    if (empty) return;
    sample::fill_product_database(product);
    sample::fill_accounting_store(accounting);
}

void copy_definitions(const fs::path& from, const fs::path& to)
{
    for (const auto& entry : fs::directory_iterator(from)) {
        if (entry.is_regular_file()) fs::copy_file(entry.path(), to / entry.path().filename());
    }
}

/// The list files name the definitions by the place that the folder will have.
void write_report_lists(const fs::path& making, const fs::path& place, ProfileFile& profiles)
{
    static constexpr std::array kKinds{eRptQuote,           eRptCustomerList,   eRptItemList,       eRptWinLossGraph,
                                       eRptLostReasonGraph, eRptOverviewQuotes, eRptOrderChecklist, eRptExpireQuotes,
                                       eRptBackOrder,       eRptCustom};
    SessionState state;
    state.gSess = std::make_shared<NewCompanySession>();
    state.ports.profiles = &profiles;
    for (const WhichReport kind : kKinds) {
        state.ports.application_folder = making.string();
        const std::string list = INIFile(state, kind);
        state.ports.application_folder = place.string();
        DefaultReportLists(state).create(kind, list);
    }
}

}  // namespace

void make_application_folder(const NewFolder& wanted, ProfileFile& lists)
{
    const fs::path place = fs::absolute(wanted.folder / "").lexically_normal().parent_path();
    try {
        require_free(place);
        FolderInTheMaking making(place);
        for (const char* name : {"Reports", "Export", "Log File"}) fs::create_directory(making.path() / name);
        write_config(making.path());
        make_databases(making.path(), wanted.empty);
        copy_definitions(wanted.definitions, making.path() / "Reports");
        write_report_lists(making.path(), place, lists);
        making.move_into_place();
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
