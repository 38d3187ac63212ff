#include "host/pipe_file.h"

#include <unistd.h>

#include <nlohmann/json.hpp>

#include "host/host_error.h"
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

void write_fields(std::ostream& out, const std::vector<PipeField>& fields)
{
    const char* separator = "";
    for (const PipeField& field : fields) {
        out << separator << "{\"name\":" << json_text(field.name) << ",\"type\":" << int{field.type}
            << ",\"size\":" << field.size << '}';
        separator = ",";
    }
}

void write_rows(std::ostream& out, TableSource& table)
{
    const size_t width = table.fields().size();
    const char* before_row = "";
    while (table.next()) {
        out << before_row << '[';
        for (size_t field = 0; field < width; ++field) out << (field == 0 ? "" : ",") << cell_text(table.cell(field));
        out << ']';
        before_row = ",\n";
    }
}

}  // namespace

void write_pipe(std::ostream& out, std::string_view kind, const DataPipeRecordset& pipe)
{
    out << "{\"kind\":" << json_text(kind) << ",\"fields\":[";
    write_fields(out, pipe.fields());
    out << "],\"rows\":[";
    write_rows(out, *pipe.table());
    out << "]}\n";
}

PipeFile::PipeFile(const std::filesystem::path& target) : target_(target), making_(target)
{
    // What is there and no file, such as a device, is written to and not replaced.
    std::error_code ignored;
    renamed_ = !std::filesystem::is_other(target, ignored);
    if (renamed_) making_ += ".making-" + std::to_string(::getpid());
    file_.open(making_, std::ios::binary | std::ios::trunc);
    if (!file_) fail();
}

PipeFile::~PipeFile()
{
    std::error_code ignored;  // gone already after a finish
    if (renamed_) std::filesystem::remove(making_, ignored);
}

void PipeFile::finish()
{
    file_.close();
    if (!file_) fail();
    if (!renamed_) return;
    std::error_code error;
    std::filesystem::rename(making_, target_, error);
    if (error) fail();
}

void PipeFile::fail() const
{
    throw HostError("Data Pipe", "The file \"" + target_.string() +
                                     "\" of --pipe cannot be written. Its folder may be missing, full or closed to "
                                     "you.");
}

}  // namespace velora
