#include "host/pipe_file.h"

#include <nlohmann/json.hpp>

#include "host/host_error.h"
#include "values/fault.h"
#include "values/number_text.h"

namespace velora {
namespace {

std::string json_text(std::string_view text)
{
    using nlohmann::json;
    return json(text).dump(-1, ' ', false, json::error_handler_t::replace);
}

std::string cell_text(const Value& value)
{
    switch (value.type()) {
        case Value::Type::Null:
            return "null";
        case Value::Type::Boolean:
            return *value.get_if<bool>() ? "true" : "false";
        case Value::Type::Integer:
            return std::to_string(*value.get_if<int64_t>());
        case Value::Type::Date:
        case Value::Type::Text:
            return json_text(to_text(value));
        default:
            return plain_text(to_number(value));
    }
}

std::string head_text(std::string_view kind, const std::vector<PipeField>& fields)
{
    std::string text = "{\"kind\":" + json_text(kind) + ",\"fields\":[";
    const char* separator = "";
    for (const PipeField& field : fields) {
        text += separator;
        text += "{\"name\":" + json_text(field.name) + ",\"type\":" + std::to_string(field.type) +
                ",\"size\":" + std::to_string(field.size) + '}';
        separator = ",";
    }
    return text + "],\"rows\":[";
}

std::string row_text(TableSource& table)
{
    std::string text = "[";
    for (size_t field = 0; field < table.fields().size(); ++field) {
        if (field > 0) text += ',';
        text += cell_text(table.cell(field));
    }
    return text + ']';
}

}  // namespace

PipeFile::PipeFile(const std::filesystem::path& target) : target_(target)
{
    attempt([&] { file_.emplace(target); });
}

void PipeFile::add(std::string_view kind, const DataPipeRecordset& pipe)
{
    write(head_text(kind, pipe.fields()));
    const auto table = pipe.table();
    for (const char* before = ""; table->next(); before = ",\n") write(before + row_text(*table));
    write("]}\n");
}

void PipeFile::finish()
{
    if (file_) attempt([&] { file_->finish(); });
}

void PipeFile::write(std::string_view text)
{
    if (taker_) return taker_(text);
    attempt([&] { file_->write(text); });
}

template <class Action>
void PipeFile::attempt(Action action) const
{
    try {
        action();
    } catch (const Fault& caught) {
        throw HostError("Data Pipe", "The file of --pipe is not written. " + caught.description());
    }
}

}  // namespace velora
