#include "forms/controls/buttons.h"

#include "forms/controls/control_visitor.h"
#include "forms/controls/form.h"

namespace velora::forms {

bool Button::press_shortcut(std::string_view key)
{
    if (key != shortcut) return false;
    // The key that accepts leaves the box as a click does; the one that gives up asks nothing.
    if (is_usable() && (key != kAcceptKey || form().enter(*this))) press();
    return true;
}

bool Button::has_key(std::string_view key) const
{
    return key == kAcceptKey || Control::has_key(key);
}

bool Button::press_key(std::string_view key)
{
    if (key != kAcceptKey) return Control::press_key(key);
    press();
    return true;
}

bool Clickable::press_shortcut(std::string_view key)
{
    if (key != shortcut) return false;
    if (is_usable()) press();
    return true;
}

void CheckBox::set_value(int value)
{
    constexpr int kGreyed = 2;
    if (value < 0 || value > kGreyed) throw fault::of(fault::kPropertyValue, name());
    if (value == value_) return;
    value_ = value;
    changed.tell();
    click.fire();
}

void CheckBox::press()
{
    set_value(value_ == 0 ? 1 : 0);
}

void OptionButton::set_value(bool value)
{
    if (value == value_) return;
    value_ = value;
    if (value) clear_others();
    changed.tell();
    if (value) click.fire();
}

void OptionButton::clear_others()
{
    for (Control* control : form().controls()) {
        auto* other = dynamic_cast<OptionButton*>(control);
        if (other == nullptr || other == this || other->around() != around()) continue;
        other->set_value(false);
    }
}

void Button::accept(ControlVisitor& visitor) const
{
    visitor.visit(*this);
}

void CheckBox::accept(ControlVisitor& visitor) const
{
    visitor.visit(*this);
}

void OptionButton::accept(ControlVisitor& visitor) const
{
    visitor.visit(*this);
}

void MenuEntry::accept(ControlVisitor& visitor) const
{
    visitor.visit(*this);
}

void ToolButton::accept(ControlVisitor& visitor) const
{
    visitor.visit(*this);
}

}  // namespace velora::forms
