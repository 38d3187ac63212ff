#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "engine/fill/pages/band.h"

namespace velora::engine {

/// Fills a report: rows in, bands on pages out. Columns run down the page (vertical order) or the rows across them
/// (horizontal order); the two differ where a band may break and in how details step on.
class Filler {
public:
    explicit Filler(Run& run);
    void fill();

private:
    struct GroupState {
        GroupState(Run& run, const GroupPlan& plan);

        const GroupPlan& plan;
        const model::Group& group;
        std::vector<std::unique_ptr<Band>> headers, footers;
        bool header_printed = false;
        bool footer_printed = true;
        int details = 0;                     ///< printed since the group began
        std::optional<Range> keep_together;  ///< what has to move with the group when the page ends

        [[nodiscard]] bool has_min_details(int without = 0) const;
        [[nodiscard]] bool holds_together() const
        {
            return keep_together && (group.keep_together || !has_min_details());
        }
    };
    /// Group footers that are moved to the bottom when the page or column is full.
    struct FooterRange {
        Range range;
        model::FooterPosition master;   ///< how the footers collected so far are treated
        model::FooterPosition current;  ///< of the footer that is being printed
    };
    /// What a break takes along.
    struct Leaving {
        std::optional<model::FooterPosition> footer_position;  ///< of a group footer that goes over
        std::optional<size_t> group;                           ///< that is kept together
        std::optional<Range> first, second;
        PageBook::Taken first_elements, second_elements;
    };

    // filler.cpp: the course of the report
    void begin_report();
    void begin_body();
    bool next_row();
    void begin_part(model::Moment part);
    void no_data();
    void title();
    void background();
    void mark_new_page_or_column();
    void mark_new_group(size_t group);
    void begin_group(size_t index);

    // bands.cpp: putting a band on the page
    void place(Band& band, int x, Moment moment);
    void place_fixed(Band& band, Moment moment, bool may_shrink = true);
    bool place_whole(Band& band, Moment moment);
    void place_cut(Band& band, Moment moment);
    void place_on_pages(Band& band);
    void place_in_column(Band& band, Moment moment, bool recalculate = false);
    [[nodiscard]] bool must_move(const Band& band) const;
    void prepare_again(Band& band, Moment moment, int room);
    void note_row(Moment moment);
    void resolve(const Awaited& awaited, Moment moment);
    void resolve_groups(Moment moment, bool final);
    void warn_cut(const Band& band);
    void cut_if_hopeless(Band& band, bool has_all_room);

    // pages.cpp: pages, columns and what frames them
    void add_page(bool reset_number);
    void resolve_page(Moment moment, bool final);
    void end_page(Moment moment, bool final = false);
    void page_header(Moment moment);
    void column_headers(Moment moment);
    void column_header_down(Moment moment);
    void column_headers_across(Moment moment);
    void column_footers(Moment moment);
    void column_footer_down(Moment moment);
    void column_footers_across(Moment moment);
    void page_footer(Moment moment);
    void close_page_bands(Moment moment);
    void set_last_page();
    void set_column(int column);
    void set_column_x();

    // breaks.cpp: breaks and what moves with them
    void page_break(bool reset_number, Moment before, Moment after, bool reprint);
    void column_break(Moment before, Moment after);
    [[nodiscard]] Moment before_break(bool by_page) const;
    void make_room(int wanted, Moment after);
    void note_ends();
    Leaving leave();
    void arrive(Leaving&& leaving);
    void put(PageBook::Taken&& taken, const Range& range);
    void float_column_footer(const Leaving& leaving);
    void move_footers_down();
    void settle_footers();
    [[nodiscard]] std::optional<size_t> group_to_move() const;
    void grow_if_here(std::optional<Range>& range);

    // groups.cpp
    void group_headers(bool all);
    void group_header(size_t index);
    void group_header_band(GroupState& group, Band& band);
    void reprint_headers(Moment moment, bool new_page);
    void reprint_header(GroupState& group, Moment moment);
    void group_footers(bool all);
    void group_footer(size_t index, Moment moment);
    void group_footer_band(GroupState& group, size_t index, Band& band, Moment moment);
    void collect_footer(const GroupState& group);

    // details.cpp
    void details();
    void step_across();
    void leave_room_for_detail();
    void detail_bands();

    // summary.cpp, summary_alone.cpp
    void summary();
    void summary_without_last_footer();
    void summary_with_page_bands();
    void summary_alone();
    void summary_above_last_footer();
    void summary_before_last_page();
    void summary_behind_last_page();
    void summary_on_last_page();
    bool begin_summary();
    void summary_on_new_page();
    void rest_of_summary();
    void next_summary_page(bool final = true);
    [[nodiscard]] int summary_room() const;
    void last_page_bands();

    [[nodiscard]] int room() const { return column_footer_y_ - y_; }
    [[nodiscard]] int page_room() const { return page_bottom() - y_; }
    [[nodiscard]] int page_bottom() const { return page_height_ - page_.bottom; }
    [[nodiscard]] bool at_top() const { return across_ ? run_.first_page_band : run_.first_column_band; }
    /// Nothing stands in the column but its headers, and no other page leaves more room.
    [[nodiscard]] bool has_all_room() const { return y_ <= fresh_y_ && is_usual_page_; }
    Band& footer_of_page() { return is_last_page_ ? last_page_footer_ : page_footer_; }
    [[nodiscard]] bool floats_column_footer() const;

    Run& run_;
    const ReportPlan& plan_;
    const model::Definition& definition_;
    const model::PageLayout& page_;
    const bool across_;  ///< horizontal order

    Band background_, title_, page_header_, column_header_, column_footer_, page_footer_, last_page_footer_, summary_,
        no_data_;
    std::vector<std::unique_ptr<Band>> details_;
    std::vector<GroupState> groups_;
    std::vector<bool> changed_;  ///< by group: the row begins a new one

    int page_height_;
    int x_ = 0;
    int y_ = 0;
    int fresh_y_ = 0;  ///< below the headers
    int column_header_y_ = 0;
    int column_footer_y_ = 0;
    int last_column_footer_y_ = 0;  ///< on the last page, whose footer may have another height
    bool is_usual_page_ = true;     ///< no title takes room
    bool new_page_ = false;
    bool new_column_ = false;
    bool row_on_page_ = false;  ///< the row that is there has been printed from on this page
    bool row_on_column_ = false;
    bool creating_page_ = false;
    bool reprinting_ = false;
    bool is_last_page_ = false;

    std::optional<FooterRange> footers_;
    std::optional<Range> detail_;          ///< the last row's details
    std::optional<Range> orphan_detail_;   ///< the details that footers must not be parted from
    std::optional<Range> orphan_footers_;  ///< those footers
    std::optional<Range> floating_footer_;
    std::optional<size_t> orphan_level_;  ///< innermost group whose footer is kept with a detail
    size_t footer_level_ = 0;             ///< group whose footer is being printed

    int last_detail_x_ = -1;  ///< horizontal order: where the last detail ended
    int last_detail_y_ = -1;
    int row_top_ = 0;     ///< top of the details that stand beside each other
    int row_bottom_ = 0;  ///< the lowest one's end
};

}  // namespace velora::engine
