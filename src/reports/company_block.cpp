#include "reports/company_block.h"

#include <array>

#include "session/value_helpers.h"

namespace velora {

namespace {

// clang-format off
template <uint16_t FaxSize>
constexpr auto kCompanyColumns = std::to_array<Column<CompanyBlock>>({
    // name                    type           size  value
    {"Company Name",          ado::VarChar,     60, [](CompanyBlock& b) -> Outcome { return b.text(b.company.Name); }},
    {"Company Address1",      ado::VarChar,     60, [](CompanyBlock& b) -> Outcome { return b.text(b.company.Address1); }},
    {"Company Address2",      ado::VarChar,     60, [](CompanyBlock& b) -> Outcome { return b.text(b.company.Address2); }},
    {"Company Address3",      ado::VarChar,     60, [](CompanyBlock& b) -> Outcome { return b.text(b.company.Address3); }},
    {"Company Address4",      ado::VarChar,     60, [](CompanyBlock& b) -> Outcome { return b.text(b.company.Address4); }},
    {"Company City",          ado::VarChar,     30, [](CompanyBlock& b) -> Outcome { return b.text(b.company.City); }},
    {"Company Prov/State",    ado::VarChar,     30, [](CompanyBlock& b) -> Outcome { return b.text(b.company.State); }},
    {"Company PC/Zip",        ado::VarChar,     20, [](CompanyBlock& b) -> Outcome { return b.text(b.company.Zip); }},
    {"Company Country",       ado::VarChar,     30, [](CompanyBlock& b) -> Outcome { return b.text(b.company.Country); }},
    {"Company Location Type", ado::VarChar,      6, [](CompanyBlock& b) -> Outcome { return b.text(b.company.LocationType); }},
    {"Company Location Code", ado::VarChar,     30, [](CompanyBlock& b) -> Outcome { return b.text(b.company.LocationCode); }},
    {"Company Phone",         ado::VarChar,     30, [](CompanyBlock& b) -> Outcome { return phone_text(b.company, b.company.Phone); }},
    {"Company Fax",           ado::VarChar, FaxSize, [](CompanyBlock& b) -> Outcome { return phone_text(b.company, b.company.Fax); }},
    {"Company Contact",       ado::VarChar,     60, [](CompanyBlock& b) -> Outcome { return b.text(b.company.Contact); }},
    {"Company Country Code",  ado::VarChar,      6, [](CompanyBlock& b) -> Outcome { return b.text(b.company.CountryCode); }},
    {"Company Home Currency", ado::VarChar,      3, [](CompanyBlock& b) -> Outcome { return b.text(b.company.HomeCurrency); }},
    {"Company MultiCurrency", ado::Boolean,      0, [](CompanyBlock& b) -> Outcome { return b.company.Multicurrency; }},
});
// clang-format on
static_assert(well_formed(kCompanyColumns<120>));

}  // namespace

std::span<const Column<CompanyBlock>> quote_company_columns()
{
    return kCompanyColumns<120>;
}

std::span<const Column<CompanyBlock>> list_company_columns()
{
    return kCompanyColumns<30>;
}

Value phone_text(const CompanyInfo& company, const Value& number)
{
    if (!company.PhoneFormat || number.is_null()) return number;
    std::string text = to_text(number);
    return Format_PhoneFax(text);
}

Outcome discount_letter(double level)
{
    constexpr auto kLetters = std::to_array<std::string_view>({"Base", "A", "B", "C", "D", "E"});
    for (size_t at = 0; at < kLetters.size(); ++at) {
        if (level == static_cast<double>(at)) return kLetters[at];
    }
    return Outcome::unwritten();
}

}  // namespace velora
