#include "reports/slip_split.h"

#include <algorithm>

#include "gateway/database_lookups.h"
#include "reports/line_kinds.h"
#include "session/company.h"
#include "session/value_helpers.h"

namespace velora {

namespace {

constexpr int16_t kRangesOfLocations = 0;
constexpr int16_t kRangesOfSequences = 1;

bool is_sql_server(const SessionState& state)
{
    return state.gEngine == eDBSQLServer;
}

/// A column as the dialect in use writes it.
std::string column_text(const SessionState& state, std::string_view column)
{
    return is_sql_server(state) ? "[" + std::string(column) + "]" : std::string(column);
}

std::string quoted_text(std::string_view text)
{
    return "'" + doubled_quotes(text) + "'";
}

/// A cell as the text that keys compare: trimmed, and a date as the region writes it. @throws Fault 94 for a null
std::string key_text(SessionState& state, const Value& cell)
{
    const auto* date = cell.get_if<DateTime>();
    return date != nullptr ? plain_date(state, *date) : trimmed_text(cell);
}

}  // namespace

SlipSplit::SlipSplit(SessionState& state, Statements& statements)
{
    // A null leaves the order in one piece: the choice falls away as a whole.
    statements.attempt("mdUseDLRange", [&] {
        if (to_number(company_default(state, "mdUseDLRange")) == 0) {
            by_sequences(state, statements);
        } else {
            by_each(state, statements);
        }
    });
}

void SlipSplit::by_sequences(SessionState& state, Statements& statements)
{
    const double split = to_number(company_default(state, "mdPSSplit"));
    if (split == 1) {
        mode_ = kPickingSequence;
        take_keys(state, statements, "dePickingSeq");
    } else if (split == 2) {
        mode_ = kPickingRange;
        take_ranges(state, kRangesOfSequences);
    }
}

void SlipSplit::by_each(SessionState& state, Statements& statements)
{
    statements.attempt("mdEachLoc", [&] { mode_ = to_int16(company_default(state, "mdEachLoc")); });
    switch (mode_) {
        case kLocation:
            return take_keys(state, statements, "deLocation");
        case kShipDate:
            return take_keys(state, statements, "deShipDate");
        default:
            return take_ranges(state, mode_ == kLocationRange ? kRangesOfLocations : kRangesOfSequences);
    }
}

void SlipSplit::take_keys(SessionState& state, Statements& statements, std::string_view column)
{
    auto& lines = opened(state.gQuoteDetails, "gQuoteDetails");
    const size_t kind = lines.column("deDType");
    const size_t key = lines.column(column);
    for (move_to_first(lines); !lines.at_eof(); lines.MoveNext()) {
        statements.attempt("slip key", [&] {
            if (!is_item_line(lines.value(kind))) return;
            std::string text = key_text(state, lines.value(key));
            if (std::ranges::find(keys_, text) == keys_.end()) keys_.push_back(std::move(text));
        });
    }
    // Without a key there is no array to ask for its bound, and one slip remains.
    if (keys_.empty()) statements.settle("slip keys", fault::kSubscript);
    slips_ = std::max<size_t>(keys_.size(), 1);
}

void SlipSplit::take_ranges(SessionState& state, int16_t kind)
{
    Get_LocationRange(state, ranges_, kind);
    slips_ = opened(ranges_, "ranges").RecordCount();
}

void SlipSplit::take(size_t slip)
{
    slip_ = slip;
    if (ranges_ && slips_ > 0) ranges_->AbsolutePosition(slip + 1);
}

/// Of the slip in hand. @throws Fault 9 where the slips go by ranges
const std::string& SlipSplit::key() const
{
    if (slip_ < keys_.size()) return keys_[slip_];
    throw fault::of(fault::kSubscript, "slip keys");
}

std::string SlipSplit::condition(SessionState& state) const
{
    if (slips_ < 2) return {};
    const auto equal_to_key = [&](std::string_view column) {
        return " AND (" + column_text(state, column) + " = " + quoted_text(key()) + ")";
    };
    switch (mode_) {
        case kLocation:
            return equal_to_key("deLocation");
        case kLocationRange:
            return range_condition(state, "deLocation");
        case kPickingRange:
            return range_condition(state, "dePickingSeq");
        case kShipDate:
            return " AND (" + column_text(state, "deShipDate") + " = '" + date_literal(state) + "')";
        case kPickingSequence:
            return equal_to_key("dePickingSeq");
        default:
            return {};
    }
}

/// Meant: the bounds of picking sequences stand bare in the plain dialect, and an upper one beside a lower one in both.
std::string SlipSplit::range_condition(SessionState& state, std::string_view column) const
{
    const std::string start = range_text("RStart");
    const std::string end = range_text("REnd");
    const bool locations = mode_ == kLocationRange;
    const auto bound = [&](const std::string& text) {
        return locations || is_sql_server(state) ? quoted_text(text) : text;
    };
    const std::string name = column_text(state, column);
    if (start.empty()) return " AND (" + name + " <= " + bound(end) + ")";
    if (start == end) return " AND (" + name + " = " + bound(start) + ")";
    return " AND (" + name + " >= " + bound(start) + " AND " + name + " <= " + (locations ? quoted_text(end) : end) +
           ")";
}

std::string SlipSplit::date_literal(SessionState& state) const
{
    const auto date = date_of(state, Value(key()));
    if (!date) throw fault::of(fault::kTypeMismatch, key());
    return is_sql_server(state) ? plain_date(state, *date) : date->date_only().iso();
}

std::string SlipSplit::printer(SessionState& state) const
{
    if (mode_ == kLocation || mode_ == kShipDate) return to_text(company_default(state, "mdPSPrintName"));
    return range_text("RPrinter");
}

std::string SlipSplit::range_name() const
{
    return range_text("RName");
}

std::string SlipSplit::range_text(std::string_view column) const
{
    return trimmed_text(opened(ranges_, "ranges").value(column));
}

}  // namespace velora
