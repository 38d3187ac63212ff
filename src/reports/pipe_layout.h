#pragma once

#include <utility>
#include <vector>

#include "reports/columns.h"

namespace velora {

/// Fields side by side in the pipe that take their values from one source.
template <class Source>
struct Section {
    size_t first;
    std::vector<Column<Source>> columns;
};

/// The fields of one kind of report in their order: the contract with its definitions. A kind declares its sections
/// as members, in the order in which they stand in the pipe:
///
///     struct ItemFields : PipeLayout {
///         Section<CompanyBlock> company = add(list_company_columns());
///         Section<ItemRow> item = add<ItemRow>(kItemColumns);
///     };
class PipeLayout {
public:
    [[nodiscard]] const std::vector<PipeField>& fields() const { return fields_; }

protected:
    template <class Source>
    Section<Source> add(const ColumnList<Source>& list)
    {
        Section<Source> section{fields_.size(), list.columns()};
        for (const auto& column : section.columns) fields_.push_back({column.name, column.type, column.size});
        return section;
    }

private:
    std::vector<PipeField> fields_;
};

}  // namespace velora
