#pragma once

#include <span>

#include "reports/columns.h"
#include "values/text.h"

namespace velora {

/// The company of the session, as every report's pipe opens with it.
struct CompanyBlock {
    const CompanyInfo& company;
    bool trims;  ///< the documents trim its texts as all of theirs, the lists show them as they stand

    [[nodiscard]] Value text(const std::string& value) const { return trims ? Value(trimmed(value)) : Value(value); }
};

/// 17 fields; the fax of the quote reports has room for 120 characters, that of the list reports for 30.
std::span<const Column<CompanyBlock>> quote_company_columns();
std::span<const Column<CompanyBlock>> list_company_columns();

/// A phone or fax number, in the mask if the company wants it so, else as it stands.
Value phone_text(const CompanyInfo& company, const Value& number);

/// The letter of a discount level; nothing to write for a number that is none.
Outcome discount_letter(double level);

}  // namespace velora
