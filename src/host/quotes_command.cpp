#include <algorithm>
#include <array>
#include <ostream>

#include "forms/finder_rows.h"
#include "host/bind.h"
#include "session/query.h"
#include "values/text.h"
#include "values/utf8.h"

namespace velora {
namespace {

struct QuotesOptions {
    std::string text;
};

// What a line shows: by what a quote is printed, and by what a person knows it.
constexpr auto kHeadings =
    std::to_array<std::string_view>({"ID", "NUMBER", "DATE", "STATUS", "CUSTOMER", "DESCRIPTION"});
using Line = std::array<std::string, kHeadings.size()>;

/// Newest first.
Command quotes_with(const std::string& text)
{
    Command query = Command::statement(
        "SELECT Quote.QuoteID,Quote.QuoteNumber,Quote.quDateEnter,QuoteStatus.qsName,QuoteStatus.qsCode,"
        "Quote.CustName,Quote.quDesc FROM Quote LEFT OUTER JOIN QuoteStatus ON "
        "Quote.QuoteStatusID = QuoteStatus.QuoteStatusID");
    if (!text.empty()) {
        query.text += " WHERE (";
        for (const char* column : {"QuoteNumber", "CustName", "AccPacID", "quDesc"}) {
            if (!query.parameters.empty()) query.text += " OR ";
            query.text.append("Quote.").append(column).append(" LIKE ? ESCAPE '!'");
            query.parameters.push_back({column, forms::pattern_that_holds(text)});
        }
        query.text += ")";
    }
    query.text += " ORDER BY Quote.quDateEnter DESC, Quote.QuoteID DESC";
    return query;
}

/// On one line whatever was typed into it; blank for a null.
std::string shown(const Value& cell)
{
    if (cell.is_null()) return {};
    if (const auto* date = cell.get_if<DateTime>()) return date->date_only().iso();
    std::string text = trimmed_text(cell);
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < ' ') c = ' ';
    }
    return text;
}

Line line_of(const Rows& row)
{
    const std::string status = shown(row.value("qsName"));
    return {shown(row.value("QuoteID")),     shown(row.value("QuoteNumber")),
            shown(row.value("quDateEnter")), status.empty() ? shown(row.value("qsCode")) : status,
            shown(row.value("CustName")),    shown(row.value("quDesc"))};
}

void print(std::ostream& out, const std::vector<Line>& lines)
{
    std::array<size_t, kHeadings.size()> widths{};
    for (const Line& line : lines) {
        for (size_t at = 0; at < line.size(); ++at) widths[at] = std::max(widths[at], character_count(line[at]));
    }
    for (const Line& line : lines) {
        std::string text;
        for (size_t at = 0; at < line.size(); ++at) {
            text += line[at];
            if (at + 1 < line.size()) text.append(widths[at] - character_count(line[at]) + 2, ' ');
        }
        out << text << '\n';
    }
}

ExitStatus list_quotes(Host& host, const QuotesOptions& options)
{
    SessionState& state = host.company();
    const std::string text(trimmed(options.text));
    const Command query = quotes_with(text);
    const auto rows = stream_query(state, {query, query});
    std::vector<Line> lines(1);
    std::ranges::copy(kHeadings, lines.front().begin());
    if (move_to_first(*rows)) {
        for (; !rows->at_eof(); rows->MoveNext()) lines.push_back(line_of(*rows));
    }
    rows->Close();
    if (lines.size() == 1) {
        host.tell("No Data Found",
                  text.empty() ? "There are no Quotes in the database."
                               : "No Quote has \"" + text + "\" in its number, customer or description.",
                  Icon::Information);
        return ExitStatus::NoData;
    }
    print(host.answers(), lines);
    return ExitStatus::Delivered;
}

}  // namespace

void add_quotes_command(CLI::App& program, CommandBody& chosen)
{
    auto* command = program.add_subcommand("quotes", "List quotes to choose from, the newest first");
    const auto options = std::make_shared<QuotesOptions>();
    command->add_option("TEXT", options->text, "Only those with this in their number, customer or description");
    bind(*command, chosen, options, list_quotes);
}

}  // namespace velora
