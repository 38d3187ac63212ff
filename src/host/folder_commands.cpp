#include "host/application_folder.h"
#include "host/bind.h"
#include "host/sample_company.h"
#include "host/shipped.h"

namespace velora {
namespace {

ExitStatus init(Host& host, NewFolder& wanted)
{
    wanted.definitions = shipped_folder(host.around().program, "definitions");
    if (!wanted.empty) wanted.samples = shipped_folder(host.around().program, "samples");
    make_application_folder(wanted, host.profiles());
    host.say("The application folder \"" + wanted.folder.string() + "\" is made.");
    if (!wanted.empty) host.say("A quote to try: " + std::string(sample::kDemoQuote));
    return ExitStatus::Delivered;
}

}  // namespace

void add_folder_commands(CLI::App& program, CommandBody& chosen)
{
    auto* command = program.add_subcommand("init", "Make an application folder with a sample company");
    const auto wanted = std::make_shared<NewFolder>();
    command->add_option("DIR", wanted->folder, "Folder to make; it must not be there yet, or be empty")->required();
    command->add_flag("--empty", wanted->empty, "The same tables without rows");
    bind(*command, chosen, wanted, init);
}

}  // namespace velora
