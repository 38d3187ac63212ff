#include "forms/controls/form.h"

#include <algorithm>
#include <utility>

namespace velora::forms {

void Form::set_caption(const std::string& caption)
{
    if (caption_ == caption) return;
    caption_ = caption;
    changed.tell();
}

void Form::set_height(int twips)
{
    height_ = twips;
    changed.tell();
}

void Form::set_pointer(Pointer pointer)
{
    pointer_ = pointer;
    changed.tell();
}

Control* Form::find(std::string_view name) const
{
    const auto found = std::ranges::find_if(controls_, [&](const Control* control) { return control->name() == name; });
    return found == controls_.end() ? nullptr : *found;
}

void Form::move_focus(Control* to)
{
    focus_ = to;
    focus_changed.tell();
}

bool Form::enter(Control& control)
{
    if (focus_ == &control) return true;
    if (!control.takes_focus() || !control.is_usable()) return false;
    if (focus_ != nullptr && focus_->check && !focus_->check()) return false;
    if (!control.is_usable()) return false;  // the check may have taken it away
    Control* const left = focus_;
    move_focus(&control);
    if (left != nullptr) left->lost_focus.fire();
    if (focus_ == &control) control.got_focus.fire();
    return focus_ == &control;
}

void Form::release_focus_within(const Control& gone)
{
    if (focus_ != nullptr && (focus_ == &gone || focus_->is_inside(gone))) move_focus(nullptr);
}

bool Form::has_shortcut(std::string_view key) const
{
    return std::ranges::any_of(controls_, [&](const Control* control) { return control->has_shortcut(key); });
}

bool Form::press_shortcut(std::string_view key)
{
    if (key.empty()) return false;
    return std::ranges::any_of(controls_, [&](Control* control) { return control->press_shortcut(key); });
}

void Form::unload()
{
    if (std::exchange(unloaded_, true)) return;
    unloaded();
    if (take_away) take_away();
}

void Form::run(const std::string& handler, const std::function<void()>& procedure)
{
    try {
        procedure();
    } catch (const Fault& caught) {
        if (tell_fault) tell_fault(name_.substr(0, name_.find(' ')) + "." + handler, caught);
    }
}

}  // namespace velora::forms
