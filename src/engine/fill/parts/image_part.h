#pragma once

#include "engine/fill/parts/images.h"
#include "engine/fill/parts/links.h"
#include "engine/fill/parts/part.h"

namespace velora::engine {

/// A picture, found by the name that its expression gives.
class ImagePart : public Part {
public:
    ImagePart(Run& run, const PartPlan& plan, const BandState& band);

    void evaluate(Moment moment) override;
    bool prepare(int available, bool continuing) override;
    void rewind() override;
    void emit(Emission& emission) override;
    void resolve(Waiting& waiting, Element& element, Moment moment) override;
    [[nodiscard]] bool repeats() const override { return repeats_; }

private:
    void take_image(Moment moment);
    [[nodiscard]] bool fit_size(int available);
    void write(Image& target) const;

    const bool waits_;
    std::shared_ptr<const ImageData> data_;
    std::shared_ptr<const Link> link_;
    std::shared_ptr<const Anchor> anchor_;
    bool repeats_ = false;
    bool went_over_ = false;  ///< to the next page, for want of room
    int shown_width_ = 0;     ///< of a picture in its real size
};

}  // namespace velora::engine
