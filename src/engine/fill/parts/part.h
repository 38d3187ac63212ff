#pragma once

#include <memory>
#include <vector>

#include "engine/expression/pattern.h"
#include "engine/fill/parts/run.h"
#include "engine/plan/plan.h"

namespace velora::engine {

/// What a band knows that its parts ask for.
struct BandState {
    BandRole role = BandRole::Detail;
    int group = kNoGroup;
    bool new_page_or_column = true;  ///< it has not been printed since the page or column began
    bool first_whole = false;        ///< it is the first one that is printed whole there
    std::vector<bool> new_group;     ///< by group: it has not been printed since the group began
};

/// One element of a band or a frame while it is filled. The order of calls is `evaluate`, then `prepare` and `emit`
/// for every page or column that it goes over.
class Part : public Resolver {
public:
    Part(Run& run, const PartPlan& plan, const BandState& band);
    virtual ~Part() = default;
    Part(const Part&) = delete;
    Part& operator=(const Part&) = delete;

    /// Takes the values of the moment.
    virtual void evaluate(Moment moment) = 0;
    /// Finds out whether it prints and how high it gets.
    /// @param available   room from the top of the container
    /// @param continuing  the band began on an earlier page or column
    /// @return whether (a part of) it does not fit and has to go over
    virtual bool prepare(int available, bool continuing) = 0;
    virtual void emit(Emission& emission) = 0;
    /// Forgets what was printed, so that all of it is printed again.
    virtual void rewind() {}
    void resolve(Waiting& waiting, Element& element, Moment moment) override;
    virtual void set_stretch_height(int height);
    /// Grows to a height that its surroundings ask for; never under its own. @return whether it did
    virtual bool stretch_to(int height);
    /// Whether the value is that of the row before.
    [[nodiscard]] virtual bool repeats() const { return true; }

    void reset();
    void push_dependents();

    [[nodiscard]] int x() const { return x_; }
    [[nodiscard]] int y() const { return y_; }
    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    [[nodiscard]] int bottom() const { return relative_y + stretch_height; }
    [[nodiscard]] const PartPlan& plan() const { return plan_; }
    [[nodiscard]] const model::Element& source() const { return *plan_.element; }

    int relative_y = 0;      ///< where it stands now
    int stretch_height = 0;  ///< how high it is now
    int collapsed_above = 0;
    int collapsed_below = 0;
    bool prints = false;
    bool reprinted = false;
    bool already_printed = false;
    std::vector<Part*> dependents;  ///< parts below that it pushes down

protected:
    struct Dress {
        const StylePlan* plan = nullptr;
        uint64_t holding = 0;
        Look look;
        const Style* style = nullptr;
        std::unique_ptr<Pattern> pattern;
    };

    void evaluate_print_when(Moment moment);
    /// The look for the moment; the parts of a run keep each different one.
    const Dress& dress(Moment moment);
    void set_prepare_height(int height);
    bool begin_prepare();
    [[nodiscard]] bool may_leave_out_repeated() const;
    /// The rule of everything that neither grows nor splits.
    bool prepare_fixed(int available, bool continuing);
    Element& add(Emission& emission, const Style* style) const;
    /// Has the element that was added last wait for its value.
    void await(Emission& emission, Awaited awaited, std::shared_ptr<void> notes = nullptr);
    [[nodiscard]] Awaited awaited() const { return {plan_.evaluation, plan_.evaluation_group, nullptr}; }

    Run& run_;
    const PartPlan& plan_;
    const BandState& band_;
    int x_, y_, width_, height_;
    int prepare_height_ = 0;
    bool shrinks_ = false;
    bool print_when_holds_ = true;
    const Dress* dress_ = nullptr;

private:
    const Dress& make_dress(const StylePlan* style, uint64_t holding);

    std::vector<std::unique_ptr<Dress>> dresses_;
};

std::unique_ptr<Part> make_part(Run& run, const PartPlan& plan, const BandState& band);

}  // namespace velora::engine
