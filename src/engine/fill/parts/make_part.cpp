#include "engine/fill/parts/barcode_part.h"
#include "engine/fill/parts/chart_part.h"
#include "engine/fill/parts/frame_part.h"
#include "engine/fill/parts/image_part.h"
#include "engine/fill/parts/nested_part.h"
#include "engine/fill/parts/simple_parts.h"
#include "engine/fill/parts/text_part.h"

namespace velora::engine {

std::unique_ptr<Part> make_part(Run& run, const PartPlan& plan, const BandState& band)
{
    switch (plan.kind) {
        case PartPlan::Kind::StaticText:
        case PartPlan::Kind::TextField:
            return std::make_unique<TextPart>(run, plan, band);
        case PartPlan::Kind::Line:
        case PartPlan::Kind::Rectangle:
        case PartPlan::Kind::Ellipse:
            return std::make_unique<GraphicPart>(run, plan, band);
        case PartPlan::Kind::Image:
            return std::make_unique<ImagePart>(run, plan, band);
        case PartPlan::Kind::Frame:
            return std::make_unique<FramePart>(run, plan, band);
        case PartPlan::Kind::Break:
            return std::make_unique<BreakPart>(run, plan, band);
        case PartPlan::Kind::Chart:
            return std::make_unique<ChartPart>(run, plan, band);
        case PartPlan::Kind::Barcode:
            return std::make_unique<BarcodePart>(run, plan, band);
        case PartPlan::Kind::Nested:
            return std::make_unique<NestedPart>(run, plan, band);
        default:
            return std::make_unique<BlankPart>(run, plan, band);
    }
}

}  // namespace velora::engine
