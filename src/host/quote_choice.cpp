#include "host/quote_choice.h"

#include <charconv>

#include "delivery/export.h"
#include "host/host_error.h"
#include "values/text.h"

namespace velora {
namespace {

int32_t id_of_text(const std::string& text)
{
    int32_t id = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), id);
    if (error != std::errc{} || end != text.data() + text.size()) {
        throw UsageError("\"" + text +
                         "\" is no quote id, which is a whole number. To name quotes by their number, "
                         "add --number.");
    }
    return id;
}

/// The dialects differ in the end of a period: one takes its last day as a whole, the other its first moment.
void add_period(Command& query, const SessionState& state, const Selection& period)
{
    const bool whole_day = state.gEngine == eDBSQLServer;
    query.text += std::string(" AND (quDateEnter >= ?) AND (quDateEnter ") + (whole_day ? "<" : "<=") + " ?)";
    query.parameters.push_back({"From", period.from});
    query.parameters.push_back({"To", DateTime(period.to.serial_day() + (whole_day ? 1 : 0), 0)});
}

std::vector<AskedQuote> chosen(SessionState& state, const CriteriaOptions& options, const Selection& period)
{
    auto query = Command::statement("SELECT QuoteID, QuoteNumber FROM Quote WHERE (1 = 1)");
    if (!period.all_dates) add_period(query, state, period);
    if (options.status != 0) {
        query.text += " AND (QuoteStatusID = ?)";
        query.parameters.push_back(Command::Parameter::integer("Status", options.status));
    }
    query.text += " ORDER BY QuoteID";
    std::vector<AskedQuote> quotes;
    const auto rows = connection(state).Stream(query);
    for (; !rows->at_eof(); rows->MoveNext()) {
        const int32_t id = to_int32(rows->value("QuoteID"));
        const Value& number = rows->value("QuoteNumber");
        std::string label = number.is_null() ? std::string() : trimmed_text(number);
        quotes.push_back({label.empty() ? std::to_string(id) : std::move(label), id});
    }
    return quotes;
}

}  // namespace

void require_quotes(const CriteriaOptions& options)
{
    const bool chooses = options.all || options.status != 0 || !options.from.empty();
    if (options.quotes.empty() && !chooses) {
        throw UsageError(
            "ID is required: name quotes by their ids, or by --number and their numbers, or choose them "
            "with --all, --from and --to, or --status.");
    }
    if (!options.quotes.empty() && chooses) {
        throw UsageError("Quotes are either named or chosen with --all, --from and --to, or --status.");
    }
    if (options.by_number) return;
    for (const std::string& quote : options.quotes) (void)id_of_text(quote);
}

std::vector<AskedQuote> asked_quotes(SessionState& state, const CriteriaOptions& options, const Selection& period)
{
    if (options.quotes.empty()) return chosen(state, options, period);
    std::vector<AskedQuote> quotes;
    for (const std::string& quote : options.quotes) {
        quotes.push_back(options.by_number ? AskedQuote{quote} : AskedQuote{quote, id_of_text(quote)});
    }
    return quotes;
}

int32_t id_of(SessionState& state, const AskedQuote& quote)
{
    if (quote.id) return *quote.id;
    auto query = Command::statement("SELECT QuoteID FROM Quote WHERE (QuoteNumber = ?)");
    query.parameters.push_back({"Number", std::string(trimmed(quote.label))});
    const auto rows = connection(state).Open(query);
    if (rows->is_empty()) {
        throw HostError("Invalid Input", "The Quote number \"" + quote.label +
                                             "\" cannot be found.\r\nPlease check the "
                                             "Quote number and try again.");
    }
    return to_int32(rows->value("QuoteID"));
}

std::string file_key(SessionState& state, const AskedQuote& quote)
{
    std::string number = quote.label;
    if (quote.id) {
        auto query = Command::statement("SELECT QuoteNumber FROM Quote WHERE (QuoteID = ?)");
        query.parameters.push_back(Command::Parameter::integer("QID", *quote.id));
        const auto rows = connection(state).Open(query);
        if (!rows->is_empty() && !rows->value("QuoteNumber").is_null()) number = to_text(rows->value("QuoteNumber"));
    }
    return lower_ascii(Replace_Slashes(state, number));
}

}  // namespace velora
