#include "adapters/accounting_core/relation.h"

#include <algorithm>

#include "adapters/store_schema/view_keys.h"
#include "values/number_text.h"
#include "values/text.h"

namespace velora::accounting {

namespace {

std::string number_comparison(RelationQuery& query, const std::string& name, const Condition& condition, double number)
{
    query.values.emplace_back(number);
    std::string comparison = name + " " + std::string(sql_operator(condition.comparison)) + " ?";
    if (condition.comparison != Condition::Operator::NotEqual) return comparison;
    return "(" + comparison + " OR " + name + " IS NULL)";
}

}  // namespace

Relation::Relation(RelationSource& source, std::string view_id)
    : id_(std::move(view_id)), words_(&source.words()), shape_(source.shape(id_))
{
}

std::string Relation::written_name(size_t field) const
{
    return words_->field(shape_.names->name(field));
}

RelationQuery Relation::browse(const std::vector<Condition>& conditions, bool ascending) const
{
    RelationQuery query{"SELECT * FROM " + words_->relation(id_), {}};
    for (const auto& condition : conditions) add_condition(query, condition);
    query.sql += order(conditions, ascending);
    return query;
}

/// Comparison of two texts. Equality with a text is worded as the key indexes are, so that they serve it; no null
/// takes part in it, as a null is the empty text.
std::string Relation::text_comparison(RelationQuery& query, size_t field, const Condition& condition) const
{
    const bool skips_null = condition.comparison == Condition::Operator::Equal && !condition.value.empty();
    const size_t marks = skips_null ? words_->equal_marks() : 1;
    query.values.insert(query.values.end(), marks, Value(condition.value));
    const std::string name = written_name(field);
    if (skips_null) return words_->equals(name);
    return words_->comparable(name) + " " + std::string(sql_operator(condition.comparison)) + " " +
           words_->comparable_mark();
}

void Relation::add_condition(RelationQuery& query, const Condition& condition) const
{
    const size_t at = field(condition.field);
    const FieldKind kind = shape_.kinds[at];
    const std::string name = written_name(at);
    const auto number = kind == FieldKind::Text ? std::nullopt : read_number(condition.value);
    query.sql += query.values.empty() ? " WHERE " : " AND ";
    if (!number) {
        query.sql += text_comparison(query, at, condition);
    } else if (kind == FieldKind::Number) {
        query.sql += number_comparison(query, name, condition, *number);
    } else {
        const auto as_number = number_comparison(query, name, condition, *number);
        const auto as_text = text_comparison(query, at, condition);
        query.sql += words_->by_stored_type(name, as_number, as_text);
    }
}

/// A field that is held to one value needs no sorting, which keeps a lookup by the whole key free of it.
std::string Relation::order(const std::vector<Condition>& conditions, bool ascending) const
{
    std::string terms;
    for (const auto key : key_columns(id_)) {
        const bool is_held = std::any_of(conditions.begin(), conditions.end(), [&](const Condition& condition) {
            return condition.comparison == Condition::Operator::Equal && same_name(condition.field, key);
        });
        if (is_held) continue;
        const size_t at = field(key);
        terms += (terms.empty() ? " ORDER BY " : ", ") + words_->sort_term(written_name(at), shape_.kinds[at]);
        if (!ascending) terms += " DESC";
    }
    return terms;
}

}  // namespace velora::accounting
