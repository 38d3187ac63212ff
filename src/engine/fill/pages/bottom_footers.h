#pragma once

#include <optional>

#include "engine/definition/model.h"
#include "engine/fill/book/page_book.h"

namespace velora::engine {

/// Group footers that are moved to the bottom when the page or column is full.
class BottomFooters {
public:
    explicit BottomFooters(PageBook& book) : book_(book) {}

    [[nodiscard]] bool empty() const { return !held_; }
    /// Of the footer that is being printed; none when nothing is held.
    [[nodiscard]] std::optional<model::FooterPosition> current() const;
    /// Whether the footers force everything that follows onto another page.
    [[nodiscard]] bool force() const { return held_ && held_->master == model::FooterPosition::ForceAtBottom; }

    /// A footer is about to be printed; from the first one that does not stay where it is they are held.
    void begin(model::FooterPosition position, int column, int top);
    /// What was left of a footer goes on here, and is moved down like its beginning.
    void go_on(model::FooterPosition position, int column, int top);
    /// The footer has been printed as far as `bottom`.
    void collect(model::FooterPosition position, int column, int bottom);
    /// The page or column ends at `bottom`.
    void grow(int bottom);
    /// Moves what is held down, so that it ends at `bottom`, and lets it go.
    void move_down(int bottom);

private:
    struct Held {
        Range range;
        model::FooterPosition master;   ///< how the footers so far are treated
        model::FooterPosition current;  ///< of the footer that is being printed
    };

    PageBook& book_;
    std::optional<Held> held_;
};

}  // namespace velora::engine
