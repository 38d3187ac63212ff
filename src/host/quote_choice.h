#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/criteria_options.h"
#include "session/session_state.h"

namespace velora {

/// A quote that a document is asked for.
struct AskedQuote {
    std::string label;               ///< as the person named it, or its number
    std::optional<int32_t> id = {};  ///< none: the label is a number that is yet to be looked up
};

/// @throws UsageError for no quote at all, a text that is no id, or a choice beside named quotes
void require_quotes(const CriteriaOptions& options);

/// The quotes of the command line, in its order; or those that its dates and status choose, in the order of their ids.
std::vector<AskedQuote> asked_quotes(SessionState& state, const CriteriaOptions& options, const Selection& period);

/// The id of a quote. @throws HostError for a number that no quote has
int32_t id_of(SessionState& state, const AskedQuote& quote);

/// What the files of a quote's documents are named after, by which quotes whose files may meet are known: its number
/// as it stands in a file's name, without case.
std::string file_key(SessionState& state, const AskedQuote& quote);

}  // namespace velora
