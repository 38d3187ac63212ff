#include "engine/fill/parts/barcode_part.h"

namespace velora::engine {

namespace {

QrLevel level_of(model::ErrorCorrection correction)
{
    using model::ErrorCorrection;
    switch (correction) {
        case ErrorCorrection::M:
            return QrLevel::M;
        case ErrorCorrection::Q:
            return QrLevel::Q;
        case ErrorCorrection::H:
            return QrLevel::H;
        case ErrorCorrection::L:
            break;
    }
    return QrLevel::L;
}

}  // namespace

void BarcodePart::evaluate(Moment moment)
{
    reset();
    evaluate_print_when(moment);
    if (!print_when_holds_) return;
    dress_ = &dress(moment);
    if (plan_.evaluation == model::EvaluationTime::Now) take_code(moment);
}

void BarcodePart::take_code(Moment moment)
{
    const std::string before = std::move(code_);
    code_ = plan_.expression.text(run_.at(moment)).value_or(std::string());
    repeats_ = code_ == before;
}

bool BarcodePart::prepare(int available, bool continuing)
{
    if (prepare_fixed(available, continuing)) return true;
    if (plan_.evaluation == model::EvaluationTime::Now && code_.empty()) prints = false;
    return false;
}

std::shared_ptr<const Drawing> BarcodePart::drawn(const Place& place)
{
    const auto& barcode = std::get<model::Barcode>(source().body);
    BarcodeRequest request;
    request.type = barcode.type;
    request.code = code_;
    request.show_text = barcode.show_text;
    request.module_width = static_cast<float>(barcode.module_width);
    request.level = level_of(barcode.error_correction);
    request.font = dress_->style->font;
    request.fore = dress_->style->fore;
    const auto width = static_cast<float>(place.width);
    const auto height = static_cast<float>(place.height);
    try {
        auto drawing = std::make_shared<Drawing>(*draw_barcode(request, width, height, run_.measurer));
        drawing->description = code_;
        return drawing;
    } catch (const BarcodeError& error) {
        run_.tell("the barcode of '" + code_ + "' is left out: " + error.what());
        auto empty = std::make_shared<Drawing>();
        empty->width = width;
        empty->height = height;
        return empty;
    }
}

void BarcodePart::emit(Emission& emission)
{
    Element& element = add(emission, dress_->style);
    element.content = Graphic{};
    if (plan_.evaluation == model::EvaluationTime::Now) {
        element.content = Graphic{drawn(element.place)};
    } else if (plan_.evaluation == model::EvaluationTime::Auto) {
        await(emission, {model::EvaluationTime::Report, kNoGroup, nullptr});
    } else {
        await(emission, awaited());
    }
}

void BarcodePart::resolve(Waiting&, Element& element, Moment moment)
{
    dress_ = &dress(moment);
    take_code(moment);
    element.content = Graphic{drawn(element.place)};
}

}  // namespace velora::engine
