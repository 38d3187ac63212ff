#include "reports/company_block.h"

#include <array>

#include "session/value_helpers.h"

namespace velora {

namespace {

template <std::string CompanyInfo::*Member>
Outcome text(CompanyBlock& block)
{
    return block.shown(block.company.*Member);
}

template <std::string CompanyInfo::*Member>
Outcome phone(CompanyBlock& block)
{
    return phone_text(block.company, Value(block.shown(block.company.*Member)));
}

// clang-format off
constexpr auto kCompanyColumns = std::to_array<Column<CompanyBlock>>({
    // name                    type        size  value
    {"Company Name",          ado::VarChar,  60, text<&CompanyInfo::Name>},
    {"Company Address1",      ado::VarChar,  60, text<&CompanyInfo::Address1>},
    {"Company Address2",      ado::VarChar,  60, text<&CompanyInfo::Address2>},
    {"Company Address3",      ado::VarChar,  60, text<&CompanyInfo::Address3>},
    {"Company Address4",      ado::VarChar,  60, text<&CompanyInfo::Address4>},
    {"Company City",          ado::VarChar,  30, text<&CompanyInfo::City>},
    {"Company Prov/State",    ado::VarChar,  30, text<&CompanyInfo::State>},
    {"Company PC/Zip",        ado::VarChar,  20, text<&CompanyInfo::Zip>},
    {"Company Country",       ado::VarChar,  30, text<&CompanyInfo::Country>},
    {"Company Location Type", ado::VarChar,   6, text<&CompanyInfo::LocationType>},
    {"Company Location Code", ado::VarChar,  30, text<&CompanyInfo::LocationCode>},
    {"Company Phone",         ado::VarChar,  30, phone<&CompanyInfo::Phone>},
    {"Company Fax",           ado::VarChar, 120, phone<&CompanyInfo::Fax>},
    {"Company Contact",       ado::VarChar,  60, text<&CompanyInfo::Contact>},
    {"Company Country Code",  ado::VarChar,   6, text<&CompanyInfo::CountryCode>},
    {"Company Home Currency", ado::VarChar,   3, text<&CompanyInfo::HomeCurrency>},
    {"Company MultiCurrency", ado::Boolean,   0, [](CompanyBlock& b) -> Outcome { return b.company.Multicurrency; }},
});
// clang-format on
static_assert(well_formed(kCompanyColumns));

}  // namespace

std::span<const Column<CompanyBlock>> company_columns()
{
    return kCompanyColumns;
}

ColumnList<CompanyBlock> list_company_columns()
{
    return ColumnList(company_columns()).resize("Company Fax", 30);
}

Outcome phone_text(const CompanyInfo& company, const Value& number)
{
    if (!company.PhoneFormat || number.is_null()) return Outcome(number);
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
