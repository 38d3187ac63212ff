#include "host/csv.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "host/host_error.h"

namespace velora {
namespace {

namespace fs = std::filesystem;

class CsvReader {
public:
    CsvReader(const std::string& text, const fs::path& file) : text_(text), file_(file) {}

    std::vector<CsvRow> rows()
    {
        std::vector<CsvRow> rows;
        while (at_ < text_.size()) rows.push_back(row());
        return rows;
    }

private:
    CsvRow row()
    {
        CsvRow row{line_, {}};
        do row.cells.push_back(value());
        while (take(','));
        take('\r');
        if (!take('\n') && at_ < text_.size()) fail("text stands behind a closing quote");
        ++line_;
        return row;
    }

    std::string value()
    {
        if (take('"')) return quoted();
        const size_t end = std::min(text_.find_first_of(",\r\n", at_), text_.size());
        std::string plain = text_.substr(at_, end - at_);
        at_ = end;
        return plain;
    }

    std::string quoted()
    {
        const size_t first_line = line_;
        std::string inside;
        while (at_ < text_.size()) {
            const char c = text_[at_++];
            if (c == '"' && !take('"')) return inside;
            line_ += c == '\n' ? 1 : 0;
            inside.push_back(c);
        }
        line_ = first_line;
        fail("a quote is not closed");
    }

    bool take(char wanted)
    {
        if (at_ >= text_.size() || text_[at_] != wanted) return false;
        ++at_;
        return true;
    }

    [[noreturn]] void fail(const std::string& what) const
    {
        throw HostError("Data",
                        "The data file \"" + file_.string() + "\", line " + std::to_string(line_) + ": " + what + ".");
    }

    const std::string& text_;
    const fs::path& file_;
    size_t at_ = 0;
    size_t line_ = 1;
};

}  // namespace

std::string read_data_file(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file || fs::is_directory(path)) {
        throw HostError("Data", "The data file \"" + path.string() + "\" cannot be opened.");
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<CsvRow> read_csv_rows(const fs::path& file)
{
    std::string text = read_data_file(file);
    if (text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
    return CsvReader(text, file).rows();
}

}  // namespace velora
