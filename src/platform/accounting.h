#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "values/value.h"

namespace velora {

/// One entry of the session's error stack.
struct AccountingError {
    int32_t Priority = 0;
    std::string Description;
};

struct CompanyInfo {
    std::string CompanyID, Name, Address1, Address2, Address3, Address4, City, State, Zip, Country;
    std::string LocationType, LocationCode, Phone, Fax, Contact, CountryCode;
    std::string HomeCurrency;
    bool Multicurrency = false;
    bool PhoneFormat = false;
};

struct CurrencyInfo {
    std::string Code, Symbol, ThousandSeparator, DecimalSeparator;
    int16_t Decimals = 2;
    int16_t SymbolPosition = 0;
    int16_t NegativeDisplay = 0;
};

struct ActiveApplication {
    std::string AppID;
    std::string AppVersion;
};

/// One accounting view: rows in key order behind a filter, or one row by its key.
class View {
public:
    virtual ~View() = default;

    virtual void Init() = 0;  ///< clears the current row and the filter
    virtual void Order(int key) = 0;
    /// @throws Fault when the filter does not parse, with an entry in the session's errors
    virtual void Browse(std::string_view filter, bool ascending) = 0;
    virtual bool Fetch() = 0;  ///< moves to the next row of the browse; false when none is left
    virtual bool Read() = 0;   ///< true when the row of the keys that were put exists
    virtual void Compose(std::span<View* const> partners) = 0;
    virtual void Cancel() = 0;
    virtual void Close() noexcept = 0;

    /// A field of the current row; a null reads as the empty text. @throws Fault for a field that the view lacks
    [[nodiscard]] virtual Value field(std::string_view name) const = 0;
    virtual void PutWithoutVerification(std::string_view name, const Value& value) = 0;
};

/// The accounting session that the host hands in.
class AccountingSession {
public:
    virtual ~AccountingSession() = default;

    /// @throws Fault when there is no such view, with an entry in `Errors`; so do all calls below
    virtual std::unique_ptr<View> OpenView(std::string_view view_id, std::string_view module_id) = 0;
    virtual const CompanyInfo& Company() = 0;
    virtual const CurrencyInfo& GetCurrency(std::string_view code) = 0;
    virtual const std::vector<ActiveApplication>& ActiveApplications() = 0;
    [[nodiscard]] virtual std::vector<AccountingError>& Errors() = 0;
};

}  // namespace velora
