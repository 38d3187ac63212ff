#include "engine/fill/rows/row_sort.h"

#include "engine/fill/rows/arithmetic.h"
#include "engine/fill/rows/group_changes.h"

namespace velora::engine {

RowSort::RowSort(const ReportPlan& plan, const MomentEnvironment::Shared& shared)
    : plan_(plan),
      fields_(plan.fields.size()),
      old_fields_(plan.fields.size()),
      variables_(plan.variables),
      now_(fields_, variables_.values(), shared),
      old_(old_fields_, variables_.old_values(), shared),
      estimated_(fields_, variables_.estimates(), shared),
      changed_(plan.groups.size())
{
    find_keys();
    if (!needed()) return;
    texts_.emplace(shared.surroundings.locale);
    variables_.begin(model::Moment::Report, changed_, now_);
}

void RowSort::find_keys()
{
    for (const auto& sort_field : plan_.definition->data.sort_fields) {
        const bool of_variable = sort_field.by == model::SortField::By::Variable;
        const auto find_in = [&](const auto& plans) {
            for (size_t slot = 0; slot < plans.size(); ++slot) {
                if (plans[slot].name == sort_field.name) keys_.push_back({of_variable, slot, sort_field.descending});
            }
        };
        if (of_variable) {
            find_in(plan_.variables);
            counts_ = true;
        } else {
            find_in(plan_.fields);
        }
    }
}

void RowSort::add(const std::vector<Value>& fields)
{
    if (counts_) {
        old_fields_.swap(fields_);
        fields_ = fields;
        count_row();
    }
    Row& row = rows_.emplace_back();
    for (const auto& key : keys_) {
        const Value& value = key.of_variable ? variables_.values()[key.slot] : fields[key.slot];
        const auto* text = value.get_if<std::string>();
        row.keys.push_back(text == nullptr ? value : Value(texts_->key(*text)));
    }
    row.fields = fields;
}

void RowSort::count_row()
{
    variables_.remember();
    if (!rows_.empty()) {
        if (plan_.estimates_for_groups) variables_.estimate(estimated_);
        find_group_changes(plan_, variables_, old_, estimated_, changed_);
        variables_.begin(model::Moment::Group, changed_, now_);
    }
    variables_.calculate(now_);
}

bool RowSort::comes_before(const Row& left, const Row& right) const
{
    for (size_t at = 0; at < keys_.size(); ++at) {
        const Value& a = left.keys[at];
        const Value& b = right.keys[at];
        int order = compare_values(a, b);
        if (a.is_null() || b.is_null()) order = static_cast<int>(b.is_null()) - static_cast<int>(a.is_null());
        if (order != 0) return keys_[at].descending ? order > 0 : order < 0;
    }
    return false;
}

std::vector<std::vector<Value>> RowSort::sorted()
{
    std::stable_sort(rows_.begin(), rows_.end(),
                     [this](const Row& left, const Row& right) { return comes_before(left, right); });
    std::vector<std::vector<Value>> fields;
    fields.reserve(rows_.size());
    for (auto& row : rows_) {
        fields.push_back(std::move(row.fields));
    }
    return fields;
}

}  // namespace velora::engine
