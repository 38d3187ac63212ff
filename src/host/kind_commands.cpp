#include <filesystem>

#include "host/bind.h"
#include "host/criteria_options.h"
#include "host/document_jobs.h"
#include "host/documents.h"
#include "host/quote_choice.h"
#include "session/value_helpers.h"

namespace velora {
namespace {

struct KindOptions {
    CriteriaOptions criteria;
    DeliveryOptions delivery;
    bool no_mark = false;
    OpeningWishes wishes;  ///< of a definition of a person's own
};

ExitStatus print_list(Host& host, const ReportKind& kind, const KindOptions& options)
{
    Documents documents(host, options.delivery, kind, 1);
    Selection what = selection_of(options.criteria, today(host.company()));
    host.engine().Wish(options.wishes);
    documents.deliver(std::string(kind.title), [&] { return what; });
    return documents.finish();
}

ExitStatus no_quotes(Host& host)
{
    host.around().err << "No quote fits.\n";
    return ExitStatus::NoData;
}

ExitStatus print_one_by_one(Host& host, const ReportKind& kind, const KindOptions& options)
{
    SessionState& state = host.company();
    state.ports.marks_as_printed = !options.no_mark;
    const Selection what = selection_of(options.criteria, today(state));
    const auto quotes = asked_quotes(state, options.criteria, what);
    if (quotes.empty()) return no_quotes(host);
    Documents documents(host, options.delivery, kind, quotes.size());
    for (const AskedQuote& quote : quotes) {
        documents.deliver(quote.label, [&] {
            Selection one = what;
            one.quote_id = id_of(state, quote);
            return one;
        });
    }
    return documents.finish();
}

/// What there is to do, looked up by a host whose stores are closed again before other processes open them.
struct JobPlan {
    Selection what;
    std::vector<AskedQuote> quotes;
    std::vector<DocumentTask> tasks;
    std::unique_ptr<PipeFile> pipe;
};

JobPlan plan_jobs(const Host& host, const ReportKind& kind, const KindOptions& options)
{
    CommonOptions quiet = host.options();
    quiet.messages.clear();
    Host planner(quiet, host.around());
    SessionState& state = planner.company();
    JobPlan plan;
    plan.what = selection_of(options.criteria, today(state));
    plan.quotes = asked_quotes(state, options.criteria, plan.what);
    for (const AskedQuote& quote : plan.quotes) plan.tasks.push_back({quote.label, file_key(state, quote)});
    if (!plan.quotes.empty()) {
        plan.pipe = Documents(planner, options.delivery, kind, std::max<size_t>(plan.quotes.size(), 2)).take_pipe();
    }
    return plan;
}

ExitStatus print_on_jobs(Host& host, const ReportKind& kind, const KindOptions& options)
{
    JobPlan plan = plan_jobs(host, kind, options);
    if (plan.quotes.empty()) return no_quotes(host);
    if (options.delivery.pipe == "-") host.leave_standard_output();
    DocumentJobs jobs{.tasks = plan.tasks,
                      .count = static_cast<size_t>(options.criteria.jobs),
                      .options = options.delivery,
                      .kind = kind,
                      .pipe = std::move(plan.pipe),
                      .select =
                          [&](SessionState& state, size_t task) {
                              Selection one = plan.what;
                              one.quote_id = id_of(state, plan.quotes[task]);
                              return one;
                          },
                      .marks = !options.no_mark};
    return run_jobs(host, jobs);
}

ExitStatus print_kind(Host& host, const ReportKind& kind, const KindOptions& options)
{
    if (kind.print == nullptr) return not_available(host, kind.title);
    if (!kind.criteria.quote) return print_list(host, kind, options);
    require_quotes(options.criteria);
    // Paper comes out of a printer in the order in which it went there.
    const bool in_any_order = options.delivery.exports() && !options.delivery.email;
    const bool on_jobs = in_any_order && options.criteria.jobs > 1 && options.criteria.quotes.size() != 1;
    return on_jobs ? print_on_jobs(host, kind, options) : print_one_by_one(host, kind, options);
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
    if (kind.splits) {
        command->add_flag("--each", options->delivery.each,
                          "A numbered file for each report of a quote, and none for an empty one");
    }
    add_delivery_options(*command, options->delivery);
    if (kind.criteria.file) add_opening_options(*command, options->wishes);
    if (!kind.criteria.file) {
        add_definition_option(*command, options->delivery);
        add_pipe_option(*command, options->delivery);
    }
    bind(*command, chosen, options, [&kind](Host& host, KindOptions& read) {
        if (kind.criteria.file) read.delivery.definition = read.criteria.file;
        if (kind.splits && read.delivery.email) read.delivery.each = true;  // a mail takes every file along
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
