#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "engine/fill/parts/part.h"

namespace velora::engine {

/// The parts of a band or of a frame, laid out together: pushed down, stretched, moved to the bottom, closed up where
/// a line is blank, and carried over to the next page or column.
class Container {
public:
    Container(Run& run, const ContainerPlan& plan, const BandState& band);
    virtual ~Container() = default;

    void evaluate(Moment moment);
    void rewind();
    [[nodiscard]] bool goes_over() const { return goes_over_with_parts_ || goes_over_with_space_; }
    [[nodiscard]] bool goes_over_with_parts() const { return goes_over_with_parts_; }
    [[nodiscard]] bool repeats() const;

    /// Starts another page or column: what was not done on the last one goes on here.
    void begin();
    /// Lays the parts out in the room that is there.
    void prepare(int available, bool overflow_allowed);
    /// Whether `emit` would print anything.
    [[nodiscard]] bool will_print() const;
    /// Has `emit` print nothing.
    void prepare_nothing();
    /// Prints what `prepare` found. @return the height that was used
    int emit(Emission& emission);

    [[nodiscard]] int stretch_height() const { return stretch_height_; }
    void set_stretch_height(int height) { stretch_height_ = height; }
    [[nodiscard]] int first_y() const { return first_y_; }
    void stretch_to_container();
    void move_to_bottom();
    [[nodiscard]] bool continuing() const { return continuing_; }

    /// The height that the definition gives.
    [[nodiscard]] virtual int height() const = 0;
    /// The same, or more where parts reach below it.
    [[nodiscard]] virtual int full_height() const { return height(); }

protected:
    [[nodiscard]] int lowest_design_bottom() const { return lowest_design_bottom_; }

private:
    void arrange();
    void link_dependents();
    void prepare_parts(int available);
    void measure(int available);
    [[nodiscard]] int needed_height() const;
    [[nodiscard]] int room_shift(const Part& part) const;
    void close_blank_lines();
    [[nodiscard]] bool is_free(const Part& of, int top, int height) const;
    void stretch_to_groups();
    int group_growth(size_t group);

    Run& run_;
    const ContainerPlan& plan_;
    std::vector<std::unique_ptr<Part>> parts_;  ///< in printing order
    std::vector<Part*> by_y_;
    std::vector<Part*> at_bottom_, stretching_, removable_;
    std::vector<std::optional<int>> group_growth_;
    int lowest_design_bottom_ = 0;
    bool prints_when_overflowing_ = false;

    bool continuing_ = false;
    bool goes_over_with_parts_ = false;
    bool goes_over_with_space_ = false;
    bool parts_over_ = false;  ///< found while preparing, before it is asked whether that is allowed
    bool space_over_ = false;
    bool overflow_allowed_ = true;
    int stretch_height_ = 0;
    int first_y_ = 0;  ///< what is above it was printed before
};

}  // namespace velora::engine
