#pragma once

#include "engine/fill/parts/part.h"

namespace velora::engine {

/// A line, a rectangle or an ellipse.
class GraphicPart : public Part {
public:
    using Part::Part;
    void evaluate(Moment moment) override;
    bool prepare(int available, bool continuing) override { return prepare_fixed(available, continuing); }
    void emit(Emission& emission) override;
};

/// A break: it takes the room that is left, so that what is below it goes over.
class BreakPart : public Part {
public:
    BreakPart(Run& run, const PartPlan& plan, const BandState& band);
    void evaluate(Moment moment) override;
    bool prepare(int available, bool continuing) override;
    void emit(Emission&) override {}
};

/// An element that is not drawn; it keeps its room.
class BlankPart : public Part {
public:
    using Part::Part;
    void evaluate(Moment moment) override;
    bool prepare(int available, bool continuing) override { return prepare_fixed(available, continuing); }
    void emit(Emission&) override {}
};

}  // namespace velora::engine
