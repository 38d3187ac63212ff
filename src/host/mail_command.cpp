#include "host/bind.h"
#include "host/mailing.h"

namespace velora {

void add_mail_command(CLI::App& program, CommandBody& chosen)
{
    const auto options = std::make_shared<MailOptions>();
    auto* command = program.add_subcommand("email", "Send an e-mail by the server and sender of the settings");
    auto* to = command->add_option("--to", options->to, "Recipients (without them the e-mail window opens)")
                   ->type_name("ADDRESS...");
    CLI::Option* const others[] = {
        command->add_option("--cc", options->cc, "Who gets a copy")->type_name("ADDRESS..."),
        command->add_option("--bcc", options->bcc, "Who gets a copy that the others do not see")
            ->type_name("ADDRESS..."),
        command->add_option("--subject", options->subject, "Subject")->type_name("TEXT"),
        command->add_option("--body", options->body, "File with the text, - for standard input")->type_name("FILE"),
        command->add_option("--attach", options->attachments, "Files that go along")->type_name("FILE..."),
        command->add_flag("--dry-run", options->dry_run, "Write the message to standard output instead of sending it"),
    };
    for (CLI::Option* other : others) other->needs(to);
    bind(*command, chosen, options, [](Host& host, const MailOptions& read) {
        if (read.to.empty()) return open_email_window(host);
        return mail_message(host, read) ? ExitStatus::Delivered : ExitStatus::Told;
    });
}

}  // namespace velora
