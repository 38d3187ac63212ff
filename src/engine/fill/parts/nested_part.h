#pragma once

#include "engine/fill/parts/nested_fill.h"
#include "engine/fill/parts/part.h"

namespace velora::engine {

/// A subreport, a list or a table. All of it is filled when its band is evaluated; it is printed in pieces that end
/// where one of its rows does, with its page and column header above each.
class NestedPart : public Part {
public:
    using Part::Part;

    void evaluate(Moment moment) override;
    bool prepare(int available, bool continuing) override;
    void emit(Emission& emission) override;
    void rewind() override;
    [[nodiscard]] bool repeats() const override { return false; }

private:
    bool prepare_piece(int available, bool continuing);
    void hand_back();
    /// What waits for the end of the outermost report waits on from where it stands now.
    /// @param path     of what the piece's elements stand in
    /// @param first    index of the first of them there
    /// @param indices  of each in the print
    void hand_on_waiting(PageBook& book, const std::vector<uint32_t>& path, uint32_t first,
                         const std::vector<size_t>& indices) const;
    void add_sources();
    void take_sources(std::vector<Element>& elements) const;
    void find_ends();
    void sort_by_row();
    void find_heading();
    void find_footing();
    [[nodiscard]] int last_end(const std::vector<int>& ends, int room) const;
    [[nodiscard]] bool choose_end(int room, bool continuing);
    [[nodiscard]] int heading() const { return at_ > 0 ? heading_height_ : 0; }

    const NestedPlan* nested_ = nullptr;  ///< of the row
    NestedPrint print_;
    bool handed_back_ = false;
    std::vector<int> row_ends_;      ///< no element stands across them
    std::vector<int> element_ends_;  ///< the same within the rows, for those that are higher than a page
    std::vector<int> row_of_;        ///< end of the row that an element stands in, ascending
    std::vector<size_t> heading_;    ///< elements that are printed above every piece
    int heading_top_ = 0;
    int heading_height_ = 0;
    std::vector<size_t> footing_;  ///< elements that are printed below every piece but the last, which has them anyway
    int footing_top_ = 0;
    int footing_height_ = 0;
    int at_ = 0;    ///< what is above was printed before
    int next_ = 0;  ///< end of the piece that comes next
    struct KnownSources {
        std::vector<Source> all;
        uint32_t first = 0;  ///< where they begin in the document's
    };
    std::map<const NestedPlan*, KnownSources> known_sources_;
    uint32_t first_source_ = 0;
    std::map<size_t, std::vector<Waiting>> waiting_;  ///< by element, for the end of the outermost report
};

}  // namespace velora::engine
