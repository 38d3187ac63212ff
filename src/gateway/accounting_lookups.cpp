#include "gateway/accounting_lookups.h"

#include "gateway/view_reading.h"
#include "session/error_messengers.h"
#include "values/number_text.h"
#include "values/text.h"

namespace velora {

namespace {

/// A lookup of one field of the first row behind a filter.
struct FilterLookup {
    std::string_view procedure;
    std::string_view view;
    std::string_view filter;
    std::string_view field;
    std::string_view composed_with = {};
};

/// A lookup of one field of the row with a key.
struct KeyLookup {
    std::string_view procedure;
    std::string_view view;
    std::string_view key;
    std::string_view field;
};

// clang-format off
constexpr FilterLookup kCustomerName{"modGeneral.Return_AccPacName",    "AR0024", "IDCUST = ",    "NAMECUST"};
constexpr FilterLookup kLocation    {"modGeneral.Return_LocationName",  "IC0370", "LOCATION = ",  "DESC"};
constexpr FilterLookup kTaxGroup    {"modGeneral.Return_TaxGroupDesc",  "TX0003", "GROUPID = ",   "DESC"};
constexpr FilterLookup kTerms       {"modGeneral.Return_TermsCodeDesc", "AR0016", "CODETERM = ",  "TEXTDESC", "AR0017"};
constexpr FilterLookup kPriceList   {"modGeneral.Return_PriceListDesc", "IC0390", "PRICELIST = ", "DESC"};
constexpr FilterLookup kCategory    {"modGeneral.Return_CategoryDesc",  "IC0210", "CATEGORY = ",  "DESC"};

constexpr KeyLookup kCustomerCurrency{"modGeneral.Return_CustCurCode",   "AR0024", "IDCUST",   "CODECURN"};
constexpr KeyLookup kCommodity       {"modGeneral.Return_ItemCommCode",  "IC0310", "ITEMNO",   "COMMODIM"};
// Reports under the name of a form of the host, and users know that text.
constexpr KeyLookup kSalesperson     {"frmMain.Return_SalesPersonName",  "AR0018", "CODESLSP", "NAMEEMPL"};
// clang-format on

std::string browse_one(SessionState& state, const FilterLookup& lookup, std::string_view code)
{
    OpenedView view(state, lookup.view);
    std::optional<OpenedView> partner;
    if (!lookup.composed_with.empty()) {
        partner.emplace(state, lookup.composed_with);
        compose(view, 1, {{0, &*partner}});
        compose(*partner, 1, {{0, &view}});
    }
    view.browse(std::string(lookup.filter).append(code));
    return view.fetch() ? view.text(lookup.field) : std::string();
}

std::string described(SessionState& state, const FilterLookup& lookup, std::string_view code)
{
    return with_failure_path(state, ErrorACCPAC, lookup.procedure, [&] {
        return state.cache.remember(lookup.procedure, {code}, [&] { return browse_one(state, lookup, code); });
    });
}

std::string described_if_given(SessionState& state, const FilterLookup& lookup, std::string_view code)
{
    const auto key = trimmed(code);
    return key.empty() ? std::string() : described(state, lookup, key);
}

std::string read_one(SessionState& state, const KeyLookup& lookup, std::string_view key)
{
    OpenedView view(state, lookup.view);
    view.put_key(lookup.key, key);
    return view.read() ? view.text(lookup.field) : std::string();
}

std::string keyed(SessionState& state, const KeyLookup& lookup, std::string_view code)
{
    const auto key = trimmed(code);
    if (key.empty()) return {};
    return with_failure_path(state, ErrorACCPAC, lookup.procedure, [&] {
        return state.cache.remember(lookup.procedure, {key}, [&] { return read_one(state, lookup, key); });
    });
}

/// A location whose code is a number other than 0; a sign or a letter in front is none.
bool is_numbered(std::string_view location)
{
    return !location.empty() && location.front() >= '0' && location.front() <= '9' && leading_number(location) != 0;
}

}  // namespace

std::string Return_AccPacName(SessionState& state, std::string_view pCustomer)
{
    return described(state, kCustomerName, trimmed(pCustomer));
}

std::string Return_LocationName(SessionState& state, std::string_view pLocation)
{
    return described_if_given(state, kLocation, pLocation);
}

std::string Return_TaxGroupDesc(SessionState& state, std::string_view pTaxGroup)
{
    return described_if_given(state, kTaxGroup, pTaxGroup);
}

std::string Return_TermsCodeDesc(SessionState& state, std::string_view pTermsCode)
{
    return described_if_given(state, kTerms, pTermsCode);
}

std::string Return_PriceListDesc(SessionState& state, std::string_view pPriceList)
{
    return described_if_given(state, kPriceList, pPriceList);
}

std::string Return_CategoryDesc(SessionState& state, std::string_view pCategory)
{
    return described_if_given(state, kCategory, pCategory);
}

std::string Return_CustCurCode(SessionState& state, std::string_view pCustomer)
{
    return keyed(state, kCustomerCurrency, pCustomer);
}

std::string Return_ItemCommCode(SessionState& state, std::string_view pItem)
{
    return keyed(state, kCommodity, pItem);
}

std::string Return_SalesPersonName(SessionState& state, std::string_view pSalesperson)
{
    return keyed(state, kSalesperson, pSalesperson);
}

bool Check_APCustNumber(SessionState& state, std::string_view pCustomer)
{
    return with_failure_path(state, ErrorACCPAC, "modGeneral.Check_APCustNumber", [&] {
        OpenedView view(state, "AR0024");
        view.browse_uncleared(std::string("IDCUST = ").append(trimmed(pCustomer)));
        return view.fetch();
    });
}

std::string Return_DefaultLocation(SessionState& state, std::string_view pItem)
{
    const auto item = trimmed(pItem);
    if (item.empty()) return {};
    return with_failure_path(state, ErrorACCPAC, "modGeneral.Return_DefaultLocation", [&] {
        OpenedView view(state, "IC0290");
        view.browse("ITEMNO = " + filter_text(item));
        while (view.fetch()) {
            if (auto location = view.text("LOCATION"); is_numbered(location)) return location;
        }
        return std::string();
    });
}

std::string Check_CustCurrencyCode(SessionState& state, std::string_view pAccountSet)
{
    if (trimmed(pAccountSet).empty()) return {};
    return with_failure_path(state, ErrorACCPAC, "modGeneral.Check_CustCurrencyCode", [&] {
        OpenedView view(state, "AR0013");
        view.init();
        view.browse_uncleared(std::string("IDACCTSET = ").append(pAccountSet));
        return view.fetch() ? to_text(view.field("CURNCODE")) : std::string();
    });
}

}  // namespace velora
