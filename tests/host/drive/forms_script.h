#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velora::testing {

/// One line of a script beside the expected answer.
///
///   == TITLE      a case begins, on a company folder of its own
///   > JSON        a command, and
///   < JSON          its answer
///   ? FORM PATH…  parts of a form's state, such as tbxQuote.text or focus, and
///   = VALUES        what they are
///   $ WORDS       something that happens outside the forms, and
///   = VALUES        what it shows, for those that show something
struct ScriptStep {
    char kind = '>';
    std::string text;
    std::vector<std::string> expected;
    std::vector<std::string> before;  ///< comments and blank lines above it
};

struct ScriptCase {
    std::string title;
    std::vector<std::string> before;
    std::vector<ScriptStep> steps;
};

std::vector<ScriptCase> read_script(const std::filesystem::path& file);
void write_script(const std::filesystem::path& file, const std::vector<ScriptCase>& cases);

/// Runs the case in a new application folder, a copy of `company`, and answers each step's lines.
/// @param windows  the module by whose widgets the script acts; blank for none
std::vector<std::vector<std::string>> play(const ScriptCase& script, const std::filesystem::path& company,
                                           const std::filesystem::path& scratch,
                                           const std::filesystem::path& windows = {});

}  // namespace velora::testing
