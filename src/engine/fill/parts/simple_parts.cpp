#include "engine/fill/parts/simple_parts.h"

namespace velora::engine {

void GraphicPart::evaluate(Moment moment)
{
    reset();
    evaluate_print_when(moment);
    if (print_when_holds_) dress_ = &dress(moment);
}

void GraphicPart::emit(Emission& emission)
{
    Element& element = add(emission, dress_->style);
    switch (plan_.kind) {
        case PartPlan::Kind::Line:
            element.content = Line{};
            break;
        case PartPlan::Kind::Rectangle:
            element.content = Rectangle{};
            break;
        default:
            element.content = Ellipse{};
            break;
    }
}

BreakPart::BreakPart(Run& run, const PartPlan& plan, const BandState& band) : Part(run, plan, band)
{
    const model::PageLayout& page = run.plan.definition->page;
    const bool of_page = std::get<model::Break>(plan.element->body).type == model::Break::Type::Page;
    x_ = 0;
    width_ = of_page ? page.width - page.left - page.right : page.column_width;
    height_ = 1;
    reset();
}

void BreakPart::evaluate(Moment moment)
{
    reset();
    evaluate_print_when(moment);
}

bool BreakPart::prepare(int available, bool continuing)
{
    if (!begin_prepare()) return false;
    if ((continuing && already_printed) || available < relative_y + height_) prints = false;
    if (!prints || run_.ignore_pagination) return false;
    const bool of_page = std::get<model::Break>(plan_.element->body).type == model::Break::Type::Page;
    const bool first = of_page ? run_.first_page_band : run_.first_column_band;
    if (first && !run_.anything_to_print) return false;
    set_prepare_height(available - relative_y);
    if (of_page) run_.column = run_.plan.definition->page.column_count - 1;
    return false;
}

void BlankPart::evaluate(Moment moment)
{
    reset();
    evaluate_print_when(moment);
}

}  // namespace velora::engine
