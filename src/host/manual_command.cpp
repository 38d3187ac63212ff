#include <ostream>

#include "host/bind.h"
#include "host/manual.h"

namespace velora {

/// What packages are made with: "manual man" is the manual page, "manual bash" and the like the shells' completion.
void add_manual_command(CLI::App& program, CommandBody& chosen)
{
    const auto form = std::make_shared<std::string>();
    auto* command = program.add_subcommand("manual", "Write the manual page, or a shell's completion")->group("");
    command->add_option("FORM", *form, "What to write")
        ->required()
        ->check(CLI::IsMember({"man", "bash", "zsh", "fish"}));
    bind(*command, chosen, form, [&program](Host& host, const std::string& wanted) {
        const Manual manual(program);
        std::ostream& out = host.around().out;
        if (wanted == "man") out << manual.man_page();
        if (wanted == "bash") out << manual.bash();
        if (wanted == "zsh") out << manual.zsh();
        if (wanted == "fish") out << manual.fish();
        return ExitStatus::Delivered;
    });
}

}  // namespace velora
