#pragma once

#include <cstdint>

#include "forms/controls/frame.h"

namespace velora::forms {

/// A push button.
class Button final : public Control {
public:
    using Control::Control;

    /// By a person.
    void press() const { click.fire(); }

    [[nodiscard]] const std::string& caption() const { return caption_; }
    void set_caption(std::string caption) { caption_ = std::move(caption); }
    std::string shortcut;  ///< the key that presses it from anywhere in the form; blank for none
    bool press_shortcut(std::string_view key) override;
    [[nodiscard]] bool has_shortcut(std::string_view key) const override { return !key.empty() && key == shortcut; }
    /// The key that accepts presses the button that has the focus, whichever button the form has for it.
    bool press_key(std::string_view key) override;
    [[nodiscard]] bool has_key(std::string_view key) const override;

    // The look of the product's own push button.
    int16_t ButtonType = 2;
    uint32_t MouseOver = 0;
    uint32_t BackColor = 0;

    Event click{form()};
    void accept(ControlVisitor& visitor) const override;

private:
    std::string caption_;
};

class CheckBox final : public Captioned {
public:
    using Captioned::Captioned;

    [[nodiscard]] int value() const { return value_; }
    /// By a procedure: fires `click` only if the value changes. @throws Fault 380 for anything but 0, 1 and 2 (greyed)
    void set_value(int value);
    /// By a person: over to the other value.
    void press();

    Event click{form()};
    void accept(ControlVisitor& visitor) const override;

private:
    int value_ = 0;
};

/// One choice of those in the same frame: setting it clears the others, which fires nothing.
class OptionButton final : public Captioned {
public:
    using Captioned::Captioned;

    [[nodiscard]] bool value() const { return value_; }
    /// By a procedure: fires `click` only if the value becomes true.
    void set_value(bool value);
    /// By a person: a click on the one that is set is none.
    void press() { set_value(true); }

    Event click{form()};
    void accept(ControlVisitor& visitor) const override;

private:
    void clear_others();

    bool value_ = false;
};

/// A part that is clicked without taking the focus.
class Clickable : public Captioned {
public:
    using Captioned::Captioned;
    [[nodiscard]] bool takes_focus() const override { return false; }

    /// By a person.
    void press() const { click.fire(); }
    std::string shortcut;  ///< the key that presses it from anywhere in the form; blank for none
    bool press_shortcut(std::string_view key) override;
    [[nodiscard]] bool has_shortcut(std::string_view key) const override { return !key.empty() && key == shortcut; }

    Event click{form()};
};

class MenuEntry final : public Clickable {
public:
    using Clickable::Clickable;
    [[nodiscard]] bool is_separator() const { return caption() == "-"; }
    void accept(ControlVisitor& visitor) const override;
};

class ToolButton final : public Clickable {
public:
    using Clickable::Clickable;
    void accept(ControlVisitor& visitor) const override;
};

}  // namespace velora::forms
