#pragma once

#include <span>

#include "reports/columns.h"
#include "values/text.h"

namespace velora {

/// The company of the session, as every report's pipe opens with it.
struct CompanyBlock {
    const CompanyInfo& company;
    bool trims;  ///< the documents trim its texts as all of theirs, the lists show them as they stand

    [[nodiscard]] std::string_view shown(std::string_view text) const { return trims ? trimmed(text) : text; }
};

/// The 17 fields of the documents.
std::span<const Column<CompanyBlock>> company_columns();
/// Those of the lists, whose fax has room for 30 characters and not for 120.
ColumnList<CompanyBlock> list_company_columns();

/// A phone or fax number, in the mask if the company wants it so, else as it stands.
Outcome phone_text(const CompanyInfo& company, const Value& number);

/// The letter of a discount level; nothing to write for a number that is none.
Outcome discount_letter(double level);

}  // namespace velora
