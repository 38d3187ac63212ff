#include "host/tables.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>

#include "host/csv.h"
#include "host/host_error.h"
#include "reports/field_types.h"
#include "values/date_time.h"
#include "values/json_nesting.h"

namespace velora {
namespace {

using nlohmann::json;
namespace fs = std::filesystem;

/// A type of `--pipe` by its code or by its name.
Value::Type type_of(const json& type)
{
    if (type.is_string()) return ado::type_record(std::string_view(type.get_ref<const std::string&>())).cell;
    return ado::type_record(type.is_number_integer() ? type.get<int>() : 0).cell;
}

Value cell_of(const json& cell, Value::Type type)
{
    if (cell.is_null()) return {};
    if (cell.is_boolean()) return cell.get<bool>();
    if (cell.is_number_unsigned() && cell.get<uint64_t>() > INT64_MAX) return cell.get<double>();
    if (cell.is_number_integer()) return cell.get<int64_t>();
    if (cell.is_number()) return type == Value::Type::Single ? Value(cell.get<float>()) : Value(cell.get<double>());
    if (cell.is_structured()) return cell.dump();  // rows for a report inside the report
    const auto& text = cell.get_ref<const std::string&>();
    if (type != Value::Type::Date) return text;
    const auto date = DateTime::from_iso(text);
    if (!date) throw std::runtime_error("\"" + text + "\" is no date of the form YYYY-MM-DD or YYYY-MM-DDTHH:MM:SS");
    return *date;
}

Value sample_of(const TableSource::Field& field, const DateTime& now)
{
    switch (field.type) {
        case Value::Type::Boolean:
            return true;
        case Value::Type::Single:
        case Value::Type::Double:
        case Value::Type::Fixed:
            return 1234.56;
        case Value::Type::Date:
            return now;
        default:
            return field.name;
    }
}

std::vector<Value> row_of(const json& cells, const std::vector<TableSource::Field>& fields, size_t number)
{
    if (!cells.is_array() || cells.size() != fields.size()) {
        throw std::runtime_error("row " + std::to_string(number) + " does not have " + std::to_string(fields.size()) +
                                 " cells");
    }
    std::vector<Value> row;
    row.reserve(fields.size());
    for (size_t at = 0; at < fields.size(); ++at) row.push_back(cell_of(cells[at], fields[at].type));
    return row;
}

/// A list that the form asks for. @throws std::runtime_error when it is not there
const json& list_of(const json& pipe, const char* name)
{
    if (!pipe.is_object())
        throw std::runtime_error("it is neither a list of rows nor an object with \"fields\" and \"rows\"");
    const auto found = pipe.find(name);
    if (found != pipe.end() && found->is_array()) return *found;
    throw std::runtime_error("it has no list \"" + std::string(name) + "\"");
}

TableSource::Field field_of(const json& field)
{
    const auto name = field.is_object() ? field.find("name") : field.end();
    if (name == field.end() || !name->is_string()) throw std::runtime_error("a field has no name");
    return {name->get<std::string>(), type_of(field.value("type", json()))};
}

/// A list of objects, as other programs write data: each name is a field.
HeldTable table_of_objects(const json& list)
{
    std::vector<TableSource::Field> fields;
    std::map<std::string, size_t> numbers;
    std::vector<std::vector<Value>> rows;
    for (const json& object : list) {
        if (!object.is_object()) throw std::runtime_error("row " + std::to_string(rows.size() + 1) + " is no object");
        auto& row = rows.emplace_back(fields.size());
        for (const auto& [name, cell] : object.items()) {
            const auto [place, is_new] = numbers.try_emplace(name, fields.size());
            if (is_new) fields.push_back({name, Value::Type::Text});
            if (row.size() <= place->second) row.resize(place->second + 1);
            row[place->second] = cell_of(cell, Value::Type::Text);
        }
    }
    for (auto& row : rows) row.resize(fields.size());
    return {std::move(fields), std::move(rows)};
}

HeldTable table_of(const json& pipe)
{
    if (pipe.is_array()) return table_of_objects(pipe);
    std::vector<TableSource::Field> fields;
    for (const json& field : list_of(pipe, "fields")) fields.push_back(field_of(field));
    std::vector<std::vector<Value>> rows;
    for (const json& cells : list_of(pipe, "rows")) rows.push_back(row_of(cells, fields, rows.size() + 1));
    return {std::move(fields), std::move(rows)};
}

[[noreturn]] void reject(const fs::path& file, const std::string& why)
{
    throw HostError("Data",
                    "The data file \"" + file.string() + "\" is not of the form that --pipe writes: " + why + ".");
}

}  // namespace

SampleTable::SampleTable(std::vector<Field> fields, const Choices& choices, size_t count, const DateTime& now)
    : fields_(std::move(fields)), count_(count)
{
    for (const auto& field : fields_) {
        const auto found = choices.find(field.name);
        choices_.push_back(found == choices.end() ? std::vector<std::string>() : found->second);
        row_.push_back(sample_of(field, now));
    }
}

bool SampleTable::next()
{
    if (at_ == count_) return false;
    ++at_;
    for (size_t field = 0; field < fields_.size(); ++field) {
        if (fields_[field].type == Value::Type::Integer) row_[field] = static_cast<int64_t>(at_);
        if (!choices_[field].empty()) row_[field] = choices_[field][(at_ - 1) % choices_[field].size()];
    }
    return true;
}

SampleTable::Choices compared_texts(std::string_view definition)
{
    constexpr std::string_view kMiddle = "\".equals($F{";
    SampleTable::Choices choices;
    for (size_t at = definition.find(kMiddle); at != std::string_view::npos; at = definition.find(kMiddle, at + 1)) {
        const size_t open = definition.rfind('"', at - 1);
        const size_t name = at + kMiddle.size();
        const size_t close = definition.find('}', name);
        if (at == 0 || open == std::string_view::npos || close == std::string_view::npos) continue;
        auto& texts = choices[std::string(definition.substr(name, close - name))];
        std::string text(definition.substr(open + 1, at - open - 1));
        if (std::ranges::find(texts, text) == texts.end()) texts.push_back(std::move(text));
    }
    return choices;
}

HeldTable read_csv(const fs::path& file, bool head)
{
    std::vector<std::vector<Value>> rows;
    size_t width = 0;
    for (CsvRow& read : read_csv_rows(file)) {
        rows.emplace_back(std::make_move_iterator(read.cells.begin()), std::make_move_iterator(read.cells.end()));
        width = std::max(width, rows.back().size());
    }
    for (auto& row : rows) row.resize(width);  // what a short line lacks is null
    std::vector<TableSource::Field> fields;
    for (size_t at = 0; at < width; ++at) {
        const auto* name = head && !rows.empty() ? rows.front()[at].get_if<std::string>() : nullptr;
        fields.push_back(
            {name != nullptr && !name->empty() ? *name : "COLUMN_" + std::to_string(at), Value::Type::Text});
    }
    if (head && !rows.empty()) rows.erase(rows.begin());
    return {std::move(fields), std::move(rows)};
}

HeldTable read_pipe_json(const fs::path& file)
{
    const std::string text = read_data_file(file);
    if (nests_too_deep(text)) reject(file, "its lists stand in each other more than 100 deep");
    try {
        return table_of(json::parse(text));
    } catch (const json::parse_error& error) {
        const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(error.byte, text.size()));
        reject(file, "line " + std::to_string(std::count(text.begin(), end, '\n') + 1) + " is no JSON");
    } catch (const json::exception&) {
        reject(file, "a number in it is beyond every number");
    } catch (const std::runtime_error& error) {
        reject(file, error.what());
    }
}

}  // namespace velora
