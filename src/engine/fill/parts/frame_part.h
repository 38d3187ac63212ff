#pragma once

#include "engine/fill/parts/container.h"

namespace velora::engine {

/// A frame: a container in a container, with a border of its own.
class FramePart : public Part {
public:
    FramePart(Run& run, const PartPlan& plan, const BandState& band);

    void evaluate(Moment moment) override;
    bool prepare(int available, bool continuing) override;
    void emit(Emission& emission) override;
    void rewind() override;
    void set_stretch_height(int height) override;
    bool stretch_to(int height) override;
    [[nodiscard]] bool repeats() const override { return repeats_; }

private:
    class Inside : public Container {
    public:
        Inside(Run& run, const ContainerPlan& plan, const BandState& band, const FramePart& frame)
            : Container(run, plan, band), frame_(frame)
        {
        }
        [[nodiscard]] int height() const override { return frame_.height() - frame_.padding(); }
        [[nodiscard]] int full_height() const override;

    private:
        const FramePart& frame_;
    };

    [[nodiscard]] int padding() const;
    [[nodiscard]] bool is_left_out(bool continuing) const;
    [[nodiscard]] const Style* style_of_part();

    Inside inside_;
    bool repeats_ = false;
    bool filling_ = false;  ///< begun on an earlier page and not ended
    bool top_border_ = true;
    bool bottom_border_ = true;
};

}  // namespace velora::engine
