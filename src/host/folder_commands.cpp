#include <CLI/CLI.hpp>

#include "host/application_folder.h"
#include "host/commands.h"
#include "host/sample/sample_company.h"
#include "host/shipped.h"

namespace velora {

void add_folder_commands(CLI::App& program, CommandBody& chosen)
{
    auto* init = program.add_subcommand("init", "Make an application folder with a sample company");
    auto wanted = std::make_shared<NewFolder>();
    init->add_option("DIR", wanted->folder, "Folder to make; it must not be there yet, or be empty")->required();
    init->add_flag("--empty", wanted->empty, "The same tables without rows");
    init->callback([wanted, &chosen] {
        chosen = [wanted](Host& host) {
            wanted->definitions = shipped_folder(host.around().program, "definitions");
            make_application_folder(*wanted, host.profiles());
            host.say("The application folder \"" + wanted->folder.string() + "\" is made.");
            if (!wanted->empty) host.say("A quote to try: " + std::string(sample::kDemoQuote));
            return ExitStatus::Delivered;
        };
    });
}

}  // namespace velora
