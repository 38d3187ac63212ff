#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace velora {

/// The command line as a manual page and for the shells' completion, all made from what the commands say of
/// themselves, so that none of them can drift from it. Commands that no help lists are left out.
class Manual {
public:
    explicit Manual(const CLI::App& program);

    [[nodiscard]] std::string man_page() const;
    [[nodiscard]] std::string bash() const;
    [[nodiscard]] std::string zsh() const;
    [[nodiscard]] std::string fish() const;

private:
    struct Entry {
        std::string flag;   ///< "--export"; blank for an argument without a name
        std::string value;  ///< "FORMAT"; blank for none
        std::string about;
    };
    struct Command {
        std::string name;
        std::string about;
        std::vector<Entry> entries;
    };

    static std::vector<Entry> entries_of(const CLI::App& command);
    static std::string man_entries(const std::vector<Entry>& entries);
    static std::string zsh_arguments(const std::vector<Entry>& entries);
    [[nodiscard]] std::string command_names() const;

    Command program_;
    std::string footer_;
    std::vector<Command> commands_;
};

}  // namespace velora
