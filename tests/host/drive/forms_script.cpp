#include "forms_script.h"

#include <fstream>
#include <stdexcept>

namespace velora::testing {

namespace {

bool is_step(const std::string& line)
{
    return line.size() > 1 && std::string_view(">?$").find(line.front()) != std::string_view::npos && line[1] == ' ';
}

bool is_expected(const std::string& line)
{
    return line.starts_with("< ") || line.starts_with("= ");
}

}  // namespace

std::vector<ScriptCase> read_script(const std::filesystem::path& file)
{
    std::vector<ScriptCase> cases;
    std::vector<std::string> before;
    std::ifstream in(file);
    if (!in) throw std::runtime_error("no script " + file.string());
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with("== ")) {
            cases.push_back({line.substr(3), std::move(before), {}});
            before.clear();
        } else if (is_step(line)) {
            cases.back().steps.push_back({line.front(), line.substr(2), {}, std::move(before)});
            before.clear();
        } else if (is_expected(line)) {
            cases.back().steps.back().expected.push_back(line.substr(2));
        } else {
            before.push_back(line);
        }
    }
    return cases;
}

void write_script(const std::filesystem::path& file, const std::vector<ScriptCase>& cases)
{
    std::ofstream out(file);
    const auto write_lines = [&](const std::vector<std::string>& lines) {
        for (const auto& line : lines) out << line << '\n';
    };
    for (const auto& each : cases) {
        write_lines(each.before);
        out << "== " << each.title << '\n';
        for (const auto& step : each.steps) {
            write_lines(step.before);
            out << step.kind << ' ' << step.text << '\n';
            for (const auto& line : step.expected) out << (step.kind == '>' ? "< " : "= ") << line << '\n';
        }
    }
}

}  // namespace velora::testing
