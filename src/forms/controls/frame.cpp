#include "forms/controls/frame.h"

#include "forms/controls/control_visitor.h"

namespace velora::forms {

void Captioned::set_caption(const std::string& caption)
{
    if (caption_ == caption) return;
    caption_ = caption;
    changed.tell();
}

void Label::accept(ControlVisitor& visitor) const
{
    visitor.visit(*this);
}

void Frame::accept(ControlVisitor& visitor) const
{
    visitor.visit(*this);
}

void Frame::set_place(const Place& place)
{
    if (place_ == place) return;
    place_ = place;
    changed.tell();
}

}  // namespace velora::forms
