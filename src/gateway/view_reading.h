#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

#include "session/session_state.h"

namespace velora {

/// An accounting view, opened for one lookup and closed with its scope.
class OpenedView {
public:
    OpenedView(SessionState& state, std::string_view view_id);
    OpenedView(const OpenedView&) = delete;
    OpenedView& operator=(const OpenedView&) = delete;
    ~OpenedView();

    /// Starts a browse from the front of the view's key order; every filter is logged.
    void browse(std::string_view filter, bool ascending = true);
    /// A browse that leaves out the initial clearing, as a few of the product's lookups do.
    void browse_uncleared(std::string_view filter);
    bool fetch() { return view_->Fetch(); }
    bool read();  ///< the row of the keys that were put; logged as the filters are
    void init() { view_->Init(); }
    void cancel() { view_->Cancel(); }
    void put_key(std::string_view field, std::string_view value);

    [[nodiscard]] Value field(std::string_view name) const { return view_->field(name); }
    [[nodiscard]] std::string text(std::string_view name) const;  ///< trimmed
    [[nodiscard]] double number(std::string_view name) const;     ///< @throws Fault 13 for what is no number

    [[nodiscard]] View* view() { return view_.get(); }

private:
    SessionState& state_;
    std::string id_;
    std::string keys_;  // as put so far, for the log
    std::unique_ptr<View> view_;
};

/// Composes `view` with partners in an array of `slots` slots; slots without a partner hold no object.
void compose(OpenedView& view, size_t slots, std::initializer_list<std::pair<size_t, OpenedView*>> partners);

/// The fields of one row, read at once and kept for a run.
class ViewRow {
public:
    ViewRow(const OpenedView& view, std::span<const std::string_view> fields);

    /// @throws Fault 3265 for a field that was not read
    [[nodiscard]] const Value& field(std::string_view name) const;
    [[nodiscard]] double number(std::string_view name) const { return to_number(field(name)); }
    [[nodiscard]] std::string text(std::string_view name) const { return trimmed_text(field(name)); }

private:
    std::unordered_map<std::string_view, Value> fields_;  // keyed by the literals of the caller's list
};

/// A value as it stands between double quotes in a filter, its own doubled.
std::string filter_text(std::string_view value);

}  // namespace velora
