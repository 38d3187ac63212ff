#include "engine/fill/rows/rows.h"

#include "engine/fill/rows/arithmetic.h"
#include "engine/fill/rows/row_sort.h"
#include "values/text.h"
#include "values/utf8.h"

namespace velora::engine {

Rows::Rows(const ReportPlan& plan, TableSource& table, const ParameterValues& parameters,
           MomentEnvironment::Shared shared, const std::function<void(const std::string&)>& warn)
    : plan_(plan),
      table_(table),
      shared_(std::move(shared)),
      warn_(warn),
      told_(plan.fields.size()),
      fields_(plan.fields.size()),
      old_fields_(plan.fields.size()),
      variables_(plan.variables),
      now_(fields_, variables_.values(), shared_),
      old_(old_fields_, variables_.old_values(), shared_),
      estimated_(fields_, variables_.estimates(), shared_)
{
    shared_.when_resource_missing = plan.definition->data.when_resource_missing;
    bind(table);
    fill_parameters(parameters);
    table_.rewind();
    sort();
}

void Rows::bind(TableSource& table)
{
    for (const auto& field : plan_.fields) {
        const auto column_of = [&](const std::string& name) {
            const auto& columns = table.fields();
            for (size_t column = 0; column < columns.size(); ++column) {
                if (!name.empty() && columns[column].name == name) return static_cast<int>(column);
            }
            return -1;
        };
        int column = column_of(field.name);
        if (column < 0) column = column_of(field.csv_column);
        if (column < 0 && !field.optional && !table.fields().empty() && warn_) {
            warn_("the data have no field '" + field.name + "'; it stays empty");
        }
        columns_.push_back(column);
    }
}

void Rows::fill_parameters(const ParameterValues& given)
{
    shared_.parameters.resize(plan_.parameters.size());
    for (size_t slot = 0; slot < plan_.parameters.size(); ++slot) {
        const ParameterPlan& plan = plan_.parameters[slot];
        Value& value = shared_.parameters[slot];
        if (const auto found = given.find(plan.name); found != given.end()) {
            value = coerced(found->second, plan.value_class);
        } else if (plan.default_value) {
            value = plan.default_value.evaluate(now_);
        } else if (plan.name == "REPORT_LOCALE") {
            value = shared_.surroundings.locale;
        } else if (plan.name == "REPORT_TIME_ZONE") {
            value = shared_.surroundings.time_zone;
        } else if (plan.name == "IS_IGNORE_PAGINATION") {
            value = plan_.definition->ignore_pagination;
        }
        if (plan.name == "REPORT_MAX_COUNT" && !value.is_null()) left_ = static_cast<int64_t>(as_double(value));
    }
}

void Rows::sort()
{
    RowSort order(plan_, shared_);
    if (!order.needed()) return;
    while (table_.next()) {
        take_row();
        order.add(fields_);
    }
    sorted_ = order.sorted();
    next_sorted_ = 1;
    std::fill(fields_.begin(), fields_.end(), Value());
}

void Rows::take_row()
{
    for (size_t field = 0; field < columns_.size(); ++field) {
        if (columns_[field] < 0) continue;
        const Value& cell = table_.cell(static_cast<size_t>(columns_[field]));
        const ValueClass value_class = plan_.fields[field].value_class;
        if (fits_class(cell, value_class)) {
            fields_[field] = cell;
        } else {
            fields_[field] = coerced(cell, value_class);
            if (fields_[field].is_null() && !cell.is_null()) tell_lost(field, cell);
        }
    }
}

/// A value that cannot be one of its field's class is told, the first one of each field.
void Rows::tell_lost(size_t field, const Value& cell)
{
    constexpr size_t kMost = 40;  // bytes that are shown
    const auto* text = cell.get_if<std::string>();
    if (!warn_ || told_[field] || (text != nullptr && trimmed(*text).empty())) return;
    told_[field] = true;
    const FieldPlan& plan = plan_.fields[field];
    std::string shown = to_text(cell);
    size_t end = 0;
    while (end < shown.size() && end <= kMost) end += utf8_at(shown, end).size;
    if (end < shown.size()) shown = shown.substr(0, end) + "…";
    warn_("the field '" + plan.name + "' is of the class " + std::string(class_name(plan.value_class)) + ", and \"" +
          shown + "\" is none; it stays empty");
}

bool Rows::advance()
{
    if (left_ == 0) return false;
    if (left_ > 0) --left_;
    if (next_sorted_ > 0) {
        if (next_sorted_ > sorted_.size()) return false;
        old_fields_.swap(fields_);
        fields_ = std::move(sorted_[next_sorted_++ - 1]);
        return true;
    }
    if (!table_.next()) return false;
    old_fields_.swap(fields_);
    take_row();
    return true;
}

bool Rows::next()
{
    std::vector<Value> kept;  // the row before stays what it was while rows are passed over
    const bool filtered = static_cast<bool>(plan_.filter);
    if (filtered) kept = fields_;
    while (advance()) {
        if (filtered) {
            old_fields_ = kept;
            if (plan_.estimates_for_filter) {
                variables_.remember();
                estimate();
            }
            if (!plan_.filter.is_true(estimated_)) continue;
        }
        variables_.remember();
        if (plan_.estimates_for_groups) estimate();
        return true;
    }
    if (filtered) fields_ = kept;
    return false;
}

void Rows::recalculate()
{
    variables_.revert();
    variables_.recalculate(now_);
}

}  // namespace velora::engine
