#include "host/criteria_options.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <limits>

#include "host/host_error.h"
#include "values/text.h"

namespace velora {
namespace {

constexpr int kMostJobs = 64;

std::string iso_date(const std::string& text)
{
    return text.size() == 10 && DateTime::from_iso(text) ? "" : "\"" + text + "\" is no date of the form YYYY-MM-DD";
}

void add_dates(CLI::App& command, CriteriaOptions& options)
{
    auto* from = command.add_option("--from", options.from, "First quote date")->check(iso_date)->type_name("DATE");
    auto* to = command.add_option("--to", options.to, "Last quote date")->check(iso_date)->type_name("DATE");
    from->needs(to);
    to->needs(from);
}

void add_quotes(CLI::App& command, CriteriaOptions& options)
{
    command.add_option("ID", options.quotes, "Quote ids");
    command.add_flag("--number", options.by_number, "The IDs are quote numbers");
    command.add_flag("--all", options.all, "All quotes, in place of IDs");
    add_dates(command, options);
    command.add_option("--status", options.status, "Quotes of one status, in place of IDs")->type_name("ID");
    command.add_option("--jobs", options.jobs, "Work out documents on N processes at once; not for --print")
        ->check(CLI::Range(1, kMostJobs))
        ->type_name("N");
}

void add_period(CLI::App& command, CriteriaOptions& options)
{
    add_dates(command, options);
    auto* accounting = command
                           .add_option("--accounting-customer", options.accounting_customer,
                                       "Quotes of one customer of the accounting system")
                           ->type_name("NO");
    command.add_option("--customer", options.customer, "Quotes of one customer of the product's own")
        ->type_name("ID")
        ->excludes(accounting);
}

void add_file(CLI::App& command, CriteriaOptions& options)
{
    command.add_option("FILE", options.file, "Report definition, by its file or its name in the list")->required();
    command.add_option("--name", options.name, "Name of the report (default: that of the file)")->type_name("TEXT");
}

}  // namespace

void add_criteria_options(CLI::App& command, const Criteria& criteria, CriteriaOptions& options)
{
    if (criteria.quote) add_quotes(command, options);
    if (criteria.whole_quantities) {
        command.add_flag("--whole-quantities", options.whole_quantities, "Print quantities as whole numbers");
    }
    if (criteria.period) add_period(command, options);
    if (criteria.status) {
        const CLI::Range short_number(std::numeric_limits<int16_t>::min(), std::numeric_limits<int16_t>::max());
        command.add_option("--status", options.status, "Quotes of one status")
            ->type_name("ID")
            ->check(short_number, "");
        command.add_option("--reason", options.reason, "Quotes of the status 3 (lost) for one reason")
            ->type_name("ID")
            ->check(short_number, "");
    }
    if (criteria.file) add_file(command, options);
}

Selection selection_of(const CriteriaOptions& options, const DateTime& today)
{
    Selection what;
    what.whole_quantities = options.whole_quantities;
    what.all_dates = options.from.empty();
    what.from = DateTime::from_iso(options.from).value_or(today);
    what.to = DateTime::from_iso(options.to).value_or(today);
    if (what.to < what.from) {
        throw UsageError("The period from " + options.from + " to " + options.to + " ends before it begins.");
    }
    what.accounting_customer = options.accounting_customer;
    what.customer_id = options.customer;
    if (options.customer != 0) what.customer_from = CustomerFrom::Own;
    if (!options.accounting_customer.empty()) what.customer_from = CustomerFrom::Accounting;
    what.status_id = options.status;
    what.reason_id = options.reason;
    what.report_name = options.name.empty() ? std::filesystem::path(options.file).stem().string() : options.name;
    return what;
}

}  // namespace velora
