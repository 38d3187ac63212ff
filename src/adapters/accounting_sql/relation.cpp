#include "adapters/accounting_sql/relation.h"

#include "adapters/accounting_sql/view_keys.h"
#include "values/number_text.h"
#include "values/text.h"

namespace velora::accounting {

namespace {

using FieldKind = Relation::FieldKind;

std::string select_from(const std::string& view_id)
{
    return "SELECT * FROM \"" + replaced(view_id, "\"", "\"\"") + "\"";
}

FieldKind kind_of(const std::string& declared_type)
{
    if (declared_type.empty()) return FieldKind::Undeclared;
    for (const auto* mark : {"int", "real", "floa", "doub", "num", "dec", "money", "bit", "bool"}) {
        if (declared_type.find(mark) != std::string::npos) return FieldKind::Number;
    }
    return FieldKind::Text;
}

/// Comparison of two texts. Equality with a text is worded as the key indexes are, so that they serve it; no null
/// takes part in it, as a null is the empty text.
std::string text_comparison(const std::string& name, const Condition& condition, const std::string& mark)
{
    const bool skips_null = condition.comparison == Condition::Operator::Equal && !condition.value.empty();
    const std::string text = skips_null ? "trim(" + name + ")" : "ifnull(trim(" + name + "), '')";
    return text + " " + std::string(sql_operator(condition.comparison)) + " " + mark + " COLLATE NOCASE";
}

std::string number_comparison(const std::string& name, const Condition& condition, const std::string& mark)
{
    const std::string comparison = name + " " + std::string(sql_operator(condition.comparison)) + " " + mark;
    if (condition.comparison != Condition::Operator::NotEqual) return comparison;
    return "(" + comparison + " OR " + name + " IS NULL)";
}

}  // namespace

Relation::Relation(sqlite::StatementPool& pool, std::string view_id) : id_(std::move(view_id))
{
    const auto statement = pool.lend(select_from(id_));
    names_ = statement->columns();
    for (size_t column = 0; column < names_->count(); ++column) {
        kinds_.push_back(kind_of(statement->declared_type(column)));
    }
}

std::string Relation::quoted_name(size_t field) const
{
    return "\"" + replaced(names_->name(field), "\"", "\"\"") + "\"";
}

Relation::Query Relation::browse(const std::vector<Condition>& conditions, bool ascending) const
{
    Query query{select_from(id_), {}};
    for (const auto& condition : conditions) add_condition(query, condition);
    query.sql += order(conditions, ascending);
    return query;
}

void Relation::add_condition(Query& query, const Condition& condition) const
{
    const size_t at = field(condition.field);
    const std::string name = quoted_name(at);
    const auto number = kinds_[at] == FieldKind::Text ? std::nullopt : read_number(condition.value);
    const auto mark_for = [&](Value value) {
        query.values.push_back(std::move(value));
        return "?" + std::to_string(query.values.size());
    };
    query.sql += query.values.empty() ? " WHERE " : " AND ";
    if (!number) {
        query.sql += text_comparison(name, condition, mark_for(condition.value));
    } else if (kinds_[at] == FieldKind::Number) {
        query.sql += number_comparison(name, condition, mark_for(*number));
    } else {
        query.sql += "CASE WHEN typeof(" + name + ") IN ('integer', 'real') THEN " +
                     number_comparison(name, condition, mark_for(*number)) + " ELSE " +
                     text_comparison(name, condition, mark_for(condition.value)) + " END";
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
        terms += (terms.empty() ? " ORDER BY " : ", ") + sort_term(field(key)) + (ascending ? "" : " DESC");
    }
    return terms;
}

std::string Relation::sort_term(size_t field) const
{
    const std::string name = quoted_name(field);
    switch (kinds_[field]) {
        case FieldKind::Number:
            return name;
        case FieldKind::Text:
            return "trim(" + name + ") COLLATE NOCASE";
        default:
            return "CASE WHEN typeof(" + name + ") = 'text' THEN trim(" + name + ") ELSE " + name +
                   " END COLLATE NOCASE";
    }
}

}  // namespace velora::accounting
