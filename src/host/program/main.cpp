#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "adapters/terminal/progress_bar.h"
#include "host/command_line.h"
#include "values/part.h"

int main(int argc, char** argv)
{
    velora::remove_parts_on_signals();
    std::error_code unknown;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", unknown);
    const velora::Surroundings around{std::cout, std::cerr,
                                      [](const char* name) {
                                          const char* value = std::getenv(name);
                                          return std::string(value != nullptr ? value : "");
                                      },
                                      unknown ? std::filesystem::absolute(argv[0]) : program,
                                      velora::is_error_terminal()};
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    return static_cast<int>(velora::run_command_line(arguments, around));
}
