#pragma once

#include "engine/barcode/barcode.h"
#include "engine/fill/parts/part.h"

namespace velora::engine {

/// A barcode, drawn from what its expression gives. A text that the type cannot hold is a warning, and its place
/// stays empty.
class BarcodePart : public Part {
public:
    using Part::Part;

    void evaluate(Moment moment) override;
    bool prepare(int available, bool continuing) override;
    void emit(Emission& emission) override;
    void resolve(Waiting& waiting, Element& element, Moment moment) override;
    [[nodiscard]] bool repeats() const override { return repeats_; }

private:
    void take_code(Moment moment);
    [[nodiscard]] std::shared_ptr<const Drawing> drawn(const Place& place);

    std::string code_;
    bool repeats_ = false;
};

}  // namespace velora::engine
