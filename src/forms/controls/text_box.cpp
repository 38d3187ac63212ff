#include "forms/controls/text_box.h"

#include "forms/controls/control_visitor.h"

namespace velora::forms {

void TextBox::replace(const std::string& text)
{
    text_ = text;
    changed.tell();
    change.fire();
}

void TextBox::set_text(const std::string& text)
{
    if (text != text_) replace(text);
}

void TextBox::type(const std::string& text)
{
    if (!text.empty() || !text_.empty()) replace(text);
}

void TextBox::set_back(Back back)
{
    if (back_ == back) return;
    back_ = back;
    changed.tell();
}

void TextBox::accept(ControlVisitor& visitor) const
{
    visitor.visit(*this);
}

}  // namespace velora::forms
