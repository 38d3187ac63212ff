#include "engine/fill/parts/image_part.h"

#include <cmath>

#include "engine/page/picture_head.h"

namespace velora::engine {

ImagePart::ImagePart(Run& run, const PartPlan& plan, const BandState& band)
    : Part(run, plan, band), waits_(plan.evaluation != model::EvaluationTime::Now)
{
}

void ImagePart::evaluate(Moment moment)
{
    reset();
    evaluate_print_when(moment);
    went_over_ = false;
    if (!print_when_holds_) return;
    dress_ = &dress(moment);
    if (!waits_) take_image(moment);
}

void ImagePart::rewind()
{
    if (!waits_) went_over_ = false;
}

void ImagePart::take_image(Moment moment)
{
    const auto before = data_;
    data_ = nullptr;
    if (const auto name = plan_.expression.text(run_.at(moment)); name && !name->empty()) {
        std::string reason;
        data_ = run_.images.find(*name, reason);
        if (!reason.empty()) run_.tell(reason);
    }
    repeats_ = before == data_;
    if (plan_.link) {
        LinkState state = evaluate_link(*plan_.link, run_.at(moment));
        link_ = std::make_shared<Link>(std::move(state.link));
        anchor_ = state.anchor.name.empty() ? nullptr : std::make_shared<Anchor>(std::move(state.anchor));
    }
}

bool ImagePart::prepare(int available, bool continuing)
{
    const bool keeps_repeated = source().print_repeated_values || !repeats_;
    if (prepare_fixed(available, continuing)) return true;
    // a picture that changes is printed even where repeated values are left out
    if (!prints && print_when_holds_ && keeps_repeated && !(continuing && already_printed)) {
        prints = available >= relative_y + height_;
    }
    if (!prints) return false;
    if (!waits_ && !data_ && source().remove_line_when_blank) prints = false;
    shown_width_ = width_;
    return prints && fit_size(available);
}

/// Grows to the picture's own size where the definition asks for it. @return whether it has to go over for that
bool ImagePart::fit_size(int available)
{
    const ScaleImage scale = dress_->look.style.scale;
    if (waits_ || !data_ || (scale != ScaleImage::RealHeight && scale != ScaleImage::RealSize)) return false;
    const auto size = picture_head(data_->bytes);
    if (!size || width_ <= 0) return false;
    const auto natural = std::max<int64_t>(1, std::llround(size->width / data_->density));
    const int64_t width = std::min<int64_t>(width_, natural);
    const int64_t height = size->height * width / size->width;
    const Box& box = dress_->look.style.box;
    const int paddings = box.top_padding + box.bottom_padding;  // those at the sides do not count
    if (height + paddings <= height_) return false;
    const int room = available - relative_y;
    if (height + paddings > room && run_.overflow_allowed && !went_over_) {
        went_over_ = true;
        prints = false;
        return true;
    }
    const int64_t shown = std::min<int64_t>(height, std::max(0, room - paddings));
    set_prepare_height(static_cast<int>(shown) + paddings);
    if (scale == ScaleImage::RealSize) shown_width_ = static_cast<int>(shown * width / height);
    return false;
}

void ImagePart::write(Image& target) const
{
    target.data = data_;
    target.link = link_;
    target.anchor = anchor_;
}

void ImagePart::emit(Emission& emission)
{
    Element& element = add(emission, dress_->style);
    element.place.width = shown_width_;
    element.content = Image{};
    if (waits_) {
        await(emission, awaited());
    } else {
        write(std::get<Image>(element.content));
    }
}

void ImagePart::resolve(Waiting&, Element& element, Moment moment)
{
    dress_ = &dress(moment);
    take_image(moment);
    write(std::get<Image>(element.content));
}

}  // namespace velora::engine
