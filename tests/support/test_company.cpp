#include "support/test_company.h"

#include <unistd.h>

#include <cstdio>

#include "adapters/accounting_sql/schema.h"
#include "adapters/accounting_sql/session.h"
#include "adapters/sqlite/connection.h"
#include "adapters/sqlite/schema.h"
#include "adapters/sqlite_core/database.h"
#include "adapters/sqlite_core/statement.h"
#include "adapters/store_schema/tables.h"
#include "values/fault.h"

namespace velora::test {

namespace fs = std::filesystem;

namespace {

constexpr const char* kProduct = "velora.db";
constexpr const char* kAccounting = "accounting.db";

/// The empty stores are made once for the program and copied for each company.
const fs::path& empty_stores()
{
    static const fs::path folder = [] {
        fs::path made = fs::path(VELORA_TEST_SCRATCH) / ("empty-" + std::to_string(::getpid()));
        fs::remove_all(made);
        fs::create_directories(made);
        create_product_schema((made / kProduct).string());
        create_accounting_schema((made / kAccounting).string());
        return made;
    }();
    return folder;
}

void run_sql(const fs::path& file, const std::string& sql)
{
    // A scratch file need not survive a power cut, and each wait for the disk would count.
    sqlite::Database::open(file.string(), {}).run("PRAGMA synchronous = OFF; PRAGMA journal_mode = MEMORY; " + sql);
}

/// A value for a column of a declared type: as it reads, and as a literal.
std::pair<std::string, std::string> marked(const std::string& type, const std::string& number,
                                           const std::string& column)
{
    if (type.starts_with("TEXT")) return {number + " " + column, "'  " + number + " " + column + " '"};
    if (type.starts_with("INTEGER")) return {"10" + number, "10" + number};
    if (!type.starts_with("DATE")) return {number + ".25", number + ".25"};
    const auto date = DateTime(*DateTime::from_iso("2026-01-01")).serial_day() + std::stoi(number);
    const std::string iso = DateTime(date, 0).iso();
    return {iso, "'" + iso + "'"};
}

constexpr const char* kCompanyRows = R"(
    INSERT INTO CompanyInfo (CompanyID, Name, City, HomeCurrency, Multicurrency, PhoneFormat)
        VALUES ('TESTCO', 'Test Company', 'Halifax', 'CAD', 1, 1);
    INSERT INTO CurrencyInfo VALUES ('CAD', '$', ',', '.', 2, 2, 2), ('USD', 'US$', ',', '.', 2, 1, 3),
        ('JPY', 'Y', ',', '.', 0, 2, 1), ('BHD', 'BD', ',', '.', 3, 4, 2);
    INSERT INTO ActiveApplications VALUES (1, 'AR', '60A'), (2, 'IC', '53A'), (3, 'OE', '60A');
)";

constexpr const char* kDefaultsRow =
    "INSERT INTO Defaults (Company, DefaultID, mdUsePLDef, mdDefaultPL, mdShowCustItem, mdLocDetail, qdStatusOpen) "
    "VALUES ('TESTCO', 1, 0, 'STD', 0, 0, 1)";

}  // namespace

std::string EnglishRegion::short_date(const DateTime& date) const
{
    const auto p = date.parts();
    return std::to_string(p.month) + "/" + std::to_string(p.day) + "/" + std::to_string(p.year);
}

std::string EnglishRegion::plain_date(const DateTime& date) const
{
    const auto p = date.parts();
    if (date.second_of_day() == 0) return short_date(date);
    return short_date(date) + " at " + std::to_string(p.hour) + ":" + std::to_string(p.minute);
}

std::optional<DateTime> EnglishRegion::read_date(std::string_view text, int this_year) const
{
    int month = 0;
    int day = 0;
    int year = this_year;
    int read = 0;
    const std::string terminated(text);
    if (std::sscanf(terminated.c_str(), "%d/%d%n/%d%n", &month, &day, &read, &year, &read) < 2) return std::nullopt;
    return read == static_cast<int>(text.size()) ? DateTime::from_ymd(year, month, day) : std::nullopt;
}

std::string MapSettings::get(std::string_view application, std::string_view section, std::string_view key,
                             std::string_view otherwise) const
{
    const auto found = values_.find(std::string(application).append("|").append(section).append("|").append(key));
    return found == values_.end() ? std::string(otherwise) : found->second;
}

void MapSettings::set(std::string_view application, std::string_view section, std::string_view key,
                      std::string_view value)
{
    values_[std::string(application).append("|").append(section).append("|").append(key)] = value;
}

std::string MapProfiles::read(const std::string& path, std::string_view section, std::string_view key) const
{
    const auto file = files.find(path);
    if (file == files.end()) return {};
    const auto found = file->second.find(std::string(section));
    if (found == file->second.end()) return {};
    const auto value = found->second.find(std::string(key));
    return value == found->second.end() ? std::string() : value->second;
}

void MapProfiles::write(const std::string& path, std::string_view section, std::string_view key, std::string_view value)
{
    files[path][std::string(section)][std::string(key)] = value;
}

void MapProfiles::delete_section(const std::string& path, std::string_view section)
{
    files[path].erase(std::string(section));
}

std::string ReversingCipher::scramble(std::string_view text)
{
    return "!" + std::string(text.rbegin(), text.rend());
}

std::string ReversingCipher::unscramble(std::string_view text)
{
    return text.starts_with('!') ? std::string(text.rbegin(), text.rend() - 1) : std::string();
}

void FakeReport::take_rows()
{
    if (refuses) throw Fault(*refuses);
    rows.clear();
    if (!source) return;
    source->rewind();
    while (source->next()) {
        auto& row = rows.emplace_back();
        for (size_t at = 0; at < source->fields().size(); ++at) row[source->fields()[at].name] = source->cell(at);
    }
}

void FakeReport::PrintOut()
{
    take_rows();
    calls.emplace_back("print");
}

void FakeReport::Export(ExportFormat format, const std::string& path)
{
    take_rows();
    calls.push_back("export " + std::to_string(static_cast<int>(format)) + " " + path);
}

std::shared_ptr<PageView> FakeReport::View()
{
    take_rows();
    calls.emplace_back("view");
    return nullptr;
}

std::shared_ptr<OpenedReport> FakeEngine::OpenReport(const std::string& path)
{
    if (path == missing) throw fault::of(fault::kReportFile, path);
    return report;
}

TestCompany::TestCompany(WhichEngine engine_in_use) : dialect_(engine_in_use)
{
    static int number = 0;
    folder_ =
        fs::path(VELORA_TEST_SCRATCH) / ("company-" + std::to_string(::getpid()) + "-" + std::to_string(++number));
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    for (const char* file : {kProduct, kAccounting}) fs::copy_file(empty_stores() / file, folder_ / file);
    accounting(kCompanyRows);
    product(kDefaultsRow);
}

TestCompany::~TestCompany()
{
    state_ = SessionState{};
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

TestCompany& TestCompany::product(const std::string& sql)
{
    run_sql(folder_ / kProduct, sql);
    return *this;
}

TestCompany& TestCompany::accounting(const std::string& sql)
{
    run_sql(folder_ / kAccounting, sql);
    return *this;
}

TestCompany& TestCompany::mark(const std::string& table, const std::set<std::string>& keep)
{
    bool is_product = false;
    for (const auto& known : stores::product_tables()) is_product = is_product || known.name == table;
    const auto database = sqlite::Database::open((folder_ / (is_product ? kProduct : kAccounting)).string(), {});
    sqlite::Statement columns(database, "SELECT name, type FROM pragma_table_info('" + table + "')");
    std::string assignments;
    for (int ordinal = 1; columns.step(); ++ordinal) {
        const std::string column = to_text(columns.value(0));
        const std::string number = std::to_string(ordinal);
        if (keep.contains(column)) continue;
        const auto [shown, literal] = marked(to_text(columns.value(1)), number, column);
        markers_[table + "." + column] = shown;
        assignments += (assignments.empty() ? "" : ", ") + column + " = " + literal;
    }
    database.run("UPDATE \"" + table + "\" SET " + assignments);
    return *this;
}

SessionState& TestCompany::state()
{
    if (!opened_) {
        opened_ = true;
        state_.gConn = open_sqlite((folder_ / kProduct).string());
        state_.gSess = open_accounting_store((folder_ / kAccounting).string());
        state_.gEngine = dialect_;
        state_.gMultiCurr = true;
        state_.gReportSection = "TESTCO_Report";
        state_.ports = {&engine, &printers, &settings, &profiles,        &cipher, &user,
                        nullptr, &clock,    &region,   folder_.string(), "",      nullptr};
    }
    return state_;
}

}  // namespace velora::test
