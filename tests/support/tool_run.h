#pragma once

#include <array>
#include <cstdio>
#include <filesystem>
#include <string>

#include "values/text.h"

namespace velora::engine {

struct ToolRun {
    int status = -1;
    std::string output;  ///< what it wrote to either stream
};

/// A path as one word of a command.
inline std::string word(const std::filesystem::path& path)
{
    return "'" + replaced(path.string(), "'", "'\\''") + "'";
}

/// Runs a program that this project did not write. Status 127 tells that the machine has no such program.
inline ToolRun run_tool(const std::string& command)
{
    ToolRun run;
    std::FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return run;
    std::array<char, 4096> buffer{};
    while (const size_t size = std::fread(buffer.data(), 1, buffer.size(), pipe))
        run.output.append(buffer.data(), size);
    const int status = pclose(pipe);
    run.status = status >= 0 ? status >> 8 : -1;
    return run;
}

}  // namespace velora::engine
