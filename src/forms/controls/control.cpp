#include "forms/controls/control.h"

namespace velora::forms {

void Event::handle(std::string handler, std::function<void()> procedure)
{
    handler_ = std::move(handler);
    procedure_ = std::move(procedure);
}

bool Event::fire() const
{
    if (!procedure_) return false;
    form_.run(handler_, procedure_);
    return true;
}

Control::Control(ControlHolder& form, std::string name, const Control* around)
    : form_(form), name_(std::move(name)), around_(around)
{
    form_.enrol(*this);
}

void Control::set_visible(bool visible)
{
    if (visible_ == visible) return;
    visible_ = visible;
    if (!visible) form_.release_focus_within(*this);
    changed.tell();
}

void Control::set_enabled(bool enabled)
{
    if (enabled_ == enabled) return;
    enabled_ = enabled;
    if (!enabled) form_.release_focus_within(*this);
    changed.tell();
}

bool Control::is_shown() const
{
    return visible_ && (around_ == nullptr || around_->is_shown());
}

bool Control::is_usable() const
{
    return visible_ && enabled_ && (around_ == nullptr || around_->is_usable());
}

bool Control::is_inside(const Control& frame) const
{
    return around_ != nullptr && (around_ == &frame || around_->is_inside(frame));
}

bool Control::press_key(std::string_view key)
{
    return has_key(key) && key_pressed_.fire();
}

void Control::on_key(std::string key, std::string handler, std::function<void()> procedure)
{
    key_ = std::move(key);
    key_pressed_.handle(std::move(handler), std::move(procedure));
}

}  // namespace velora::forms
