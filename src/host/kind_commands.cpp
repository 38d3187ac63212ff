#include <filesystem>

#include "host/bind.h"
#include "host/criteria_options.h"
#include "host/documents.h"
#include "session/value_helpers.h"

namespace velora {
namespace {

struct KindOptions {
    CriteriaOptions criteria;
    DeliveryOptions delivery;
    bool no_mark = false;
};

ExitStatus print_kind(Host& host, const ReportKind& kind, const KindOptions& options)
{
    if (kind.print == nullptr) return not_available(host, kind.title);
    if (!options.criteria.by_number) require_ids(options.criteria.quotes);
    Documents documents(host, options.delivery, kind, std::max<size_t>(options.criteria.quotes.size(), 1));
    SessionState& state = host.company();
    state.ports.marks_as_printed = !options.no_mark;
    const Selection what = selection_of(options.criteria, today(state));
    if (!kind.criteria.quote) documents.deliver(std::string(kind.title), [&] { return what; });
    for (const std::string& quote : options.criteria.quotes) {
        documents.deliver(quote, [&] {
            Selection one = what;
            one.quote_id = quote_id(state, quote, options.criteria.by_number);
            return one;
        });
    }
    return documents.finish();
}

void add_kind(CLI::App& program, CommandBody& chosen, const ReportKind& kind)
{
    auto* command = program.add_subcommand(std::string(kind.name), std::string(kind.about));
    if (kind.print == nullptr) command->group("");  // not part of this build: it answers, and no help lists it
    const auto options = std::make_shared<KindOptions>();
    add_criteria_options(*command, kind.criteria, options->criteria);
    if (kind.marks) {
        command->add_flag("--no-mark", options->no_mark, "For a look: the quote is not marked as printed");
    }
    add_delivery_options(*command, options->delivery);
    if (!kind.criteria.file) {
        add_definition_option(*command, options->delivery);
        add_pipe_option(*command, options->delivery);
    }
    bind(*command, chosen, options, [&kind](Host& host, KindOptions& read) {
        if (kind.criteria.file) read.delivery.definition = read.criteria.file;
        return print_kind(host, kind, read);
    });
}

}  // namespace

void add_kind_commands(CLI::App& program, CommandBody& chosen)
{
    for (const ReportKind& kind : report_kinds()) add_kind(program, chosen, kind);
}

ExitStatus not_available(Host& host, std::string_view what)
{
    host.tell("Not Available", "This build does not have this yet: " + std::string(what) + ".", Icon::Exclamation);
    return ExitStatus::Told;
}

}  // namespace velora
