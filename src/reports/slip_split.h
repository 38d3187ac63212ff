#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "reports/statement.h"
#include "session/query.h"

namespace velora {

/// How the item lines of an order fall into picking slips, as the company's defaults say.
class SlipSplit {
public:
    /// By what the lines are split. A company may hold any other number: its slips go by the picking ranges and carry
    /// all lines each.
    enum Mode : int16_t {
        kLocation = 0,  ///< distinct locations, or no split at all
        kLocationRange = 1,
        kPickingRange = 2,
        kShipDate = 3,
        kPickingSequence = 4,
    };

    /// Finds the split of the lines in `gQuoteDetails`. @throws Fault 91 for an order without lines, where they count
    SlipSplit(SessionState& state, Statements& statements);

    /// A split by ranges where there are none.
    [[nodiscard]] bool lacks_ranges() const { return ranges_ != nullptr && slips_ == 0; }
    [[nodiscard]] size_t slips() const { return slips_; }
    [[nodiscard]] size_t slip() const { return slip_; }

    /// Takes a slip, from 0: the range below is then its own.
    void take(size_t slip);
    /// The condition on the lines of the slip in hand, to stand behind others; empty for a slip that is the only one,
    /// which carries all lines whatever its key or range would leave out. @throws Fault 94, 9, 13 for a bound or key
    /// that makes none
    [[nodiscard]] std::string condition(SessionState& state) const;
    /// The name of the printer for the slip in hand. @throws Fault 91 where a range would name it and there is none
    [[nodiscard]] std::string printer(SessionState& state) const;
    /// The trimmed name of the range in hand. @throws Fault 91 where the slips do not go by ranges
    [[nodiscard]] std::string range_name() const;

private:
    void by_sequences(SessionState& state, Statements& statements);
    void by_each(SessionState& state, Statements& statements);
    void take_keys(SessionState& state, Statements& statements, std::string_view column);
    void take_ranges(SessionState& state, int16_t kind);
    [[nodiscard]] const std::string& key() const;
    [[nodiscard]] std::string range_condition(SessionState& state, std::string_view column) const;
    [[nodiscard]] std::string date_literal(SessionState& state) const;
    [[nodiscard]] std::string range_text(std::string_view column) const;

    int16_t mode_ = kLocation;
    size_t slips_ = 1;
    size_t slip_ = 0;
    std::vector<std::string> keys_;  ///< in the order in which the lines first name them
    std::shared_ptr<Recordset> ranges_;
};

}  // namespace velora
