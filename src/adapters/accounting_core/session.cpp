#include "adapters/accounting_core/session.h"

#include <algorithm>

#include "adapters/accounting_core/store.h"
#include "platform/one_state.h"
#include "values/fault.h"
#include "values/text.h"

namespace velora::accounting {

namespace {

/// A row of one of the small tables, by column name.
class Row {
public:
    explicit Row(const RelationRows& rows) : rows_(rows) {}

    [[nodiscard]] Value value(std::string_view column) const { return rows_.value(rows_.names().find(column)); }

    [[nodiscard]] std::string text(std::string_view column) const
    {
        const auto cell = value(column);
        return cell.is_null() ? "" : to_text(cell);
    }

    [[nodiscard]] int16_t number(std::string_view column, int16_t otherwise) const
    {
        const auto cell = value(column);
        return cell.is_null() ? otherwise : static_cast<int16_t>(std::clamp(numeric_value(cell), -32768.0, 32767.0));
    }

    [[nodiscard]] bool flag(std::string_view column) const { return number(column, 0) != 0; }

private:
    const RelationRows& rows_;
};

struct TextMember {
    std::string_view column;
    std::string CompanyInfo::*member;
};

// clang-format off
constexpr auto kCompanyTexts = std::to_array<TextMember>({
    {"CompanyID", &CompanyInfo::CompanyID},       {"Name", &CompanyInfo::Name},
    {"Address1", &CompanyInfo::Address1},         {"Address2", &CompanyInfo::Address2},
    {"Address3", &CompanyInfo::Address3},         {"Address4", &CompanyInfo::Address4},
    {"City", &CompanyInfo::City},                 {"State", &CompanyInfo::State},
    {"Zip", &CompanyInfo::Zip},                   {"Country", &CompanyInfo::Country},
    {"LocationType", &CompanyInfo::LocationType}, {"LocationCode", &CompanyInfo::LocationCode},
    {"Phone", &CompanyInfo::Phone},               {"Fax", &CompanyInfo::Fax},
    {"Contact", &CompanyInfo::Contact},           {"CountryCode", &CompanyInfo::CountryCode},
    {"HomeCurrency", &CompanyInfo::HomeCurrency},
});
// clang-format on

CompanyInfo company_of(const Row& row)
{
    CompanyInfo company;
    for (const auto& [column, member] : kCompanyTexts) company.*member = row.text(column);
    company.Multicurrency = row.flag("Multicurrency");
    company.PhoneFormat = row.flag("PhoneFormat");
    return company;
}

CurrencyInfo currency_of(const Row& row)
{
    CurrencyInfo currency;
    currency.Code = row.text("Code");
    currency.Symbol = row.text("Symbol");
    currency.ThousandSeparator = row.text("ThousandSeparator");
    currency.DecimalSeparator = row.text("DecimalSeparator");
    currency.Decimals = row.number("Decimals", currency.Decimals);
    currency.SymbolPosition = row.number("SymbolPosition", 0);
    currency.NegativeDisplay = row.number("NegativeDisplay", 0);
    return currency;
}

ActiveApplication application_of(const Row& row)
{
    return {row.text("AppID"), row.text("AppVersion")};
}

class StoreSession final : public AccountingSession, public OneState {
public:
    explicit StoreSession(std::unique_ptr<RelationSource> source) : store_(std::make_shared<Store>(std::move(source)))
    {
    }

    std::unique_ptr<View> OpenView(std::string_view view_id, std::string_view) override
    {
        return open_view(store_, std::string(trimmed(view_id)));
    }

    const CompanyInfo& Company() override;
    const CurrencyInfo& GetCurrency(std::string_view code) override;
    const std::vector<ActiveApplication>& ActiveApplications() override;
    std::vector<AccountingError>& Errors() override { return store_->errors(); }
    std::unique_ptr<Snapshot> begin_snapshot() override;

private:
    template <class Record>
    std::vector<Record> read_all(const std::string& table, const std::string& order, Record (*record_of)(const Row&));

    std::shared_ptr<Store> store_;
    std::optional<CompanyInfo> company_;
    std::optional<std::vector<CurrencyInfo>> currencies_;
    std::optional<std::vector<ActiveApplication>> applications_;
};

template <class Record>
std::vector<Record> StoreSession::read_all(const std::string& table, const std::string& order,
                                           Record (*record_of)(const Row&))
{
    std::vector<Record> records;
    try {
        const auto rows = store_->source().select({"SELECT * FROM " + table + order, {}});
        while (rows->step()) records.push_back(record_of(Row(*rows)));
    } catch (const StoreError& error) {
        store_->fail("The accounting store cannot read " + table + ": " + error.what() + ".", table);
    } catch (const Fault& fault) {
        store_->fail(table + " lacks the column " + fault.where() + ".", table);
    }
    return records;
}

const CompanyInfo& StoreSession::Company()
{
    if (!company_) {
        auto companies = read_all<CompanyInfo>("CompanyInfo", "", company_of);
        if (companies.empty()) store_->fail("The accounting store has no company.", "CompanyInfo");
        company_ = std::move(companies.front());
    }
    return *company_;
}

const CurrencyInfo& StoreSession::GetCurrency(std::string_view code)
{
    if (!currencies_) currencies_ = read_all<CurrencyInfo>("CurrencyInfo", "", currency_of);
    for (const auto& currency : *currencies_) {
        if (same_name(trimmed(currency.Code), trimmed(code))) return currency;
    }
    store_->fail("The accounting store has no currency \"" + std::string(code) + "\".", "CurrencyInfo");
}

const std::vector<ActiveApplication>& StoreSession::ActiveApplications()
{
    if (!applications_)
        applications_ = read_all<ActiveApplication>("ActiveApplications", " ORDER BY Seq", application_of);
    return *applications_;
}

std::unique_ptr<Snapshot> StoreSession::begin_snapshot()
{
    try {
        return store_->source().begin_snapshot();
    } catch (const StoreError&) {
        return nullptr;  // what a report reads next is refused in the words of its own lookup
    }
}

}  // namespace

std::unique_ptr<AccountingSession> open_session(std::unique_ptr<RelationSource> source)
{
    return std::make_unique<StoreSession>(std::move(source));
}

}  // namespace velora::accounting
