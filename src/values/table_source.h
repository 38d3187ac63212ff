#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "values/value.h"

namespace velora {

/// The flat table that a report reads: names, types and rows in order.
class TableSource {
public:
    struct Field {
        std::string name;
        Value::Type type = Value::Type::Text;
    };

    virtual ~TableSource() = default;

    [[nodiscard]] virtual const std::vector<Field>& fields() const = 0;

    /// Goes to the next row, to the first one at the start and after `rewind`. False when none is left.
    virtual bool next() = 0;
    virtual void rewind() = 0;
    /// Cell of the current row. The reference holds until the next call of `next` or `rewind`.
    [[nodiscard]] virtual const Value& cell(size_t field) const = 0;
};

/// A table without fields and rows.
class EmptyTable final : public TableSource {
public:
    [[nodiscard]] const std::vector<Field>& fields() const override { return fields_; }
    bool next() override { return false; }
    void rewind() override {}
    [[nodiscard]] const Value& cell(size_t) const override { return none_; }

private:
    std::vector<Field> fields_;
    Value none_;
};

}  // namespace velora
