#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "forms/controls/notice.h"

namespace velora::forms {

class Form;
class Frame;
class ControlVisitor;

/// Something happens to a control and the form's procedure for it runs. A fault in the procedure ends it and is told
/// by the form; it never reaches the one who made the event happen.
class Event {
public:
    explicit Event(Form& form) : form_(form) {}

    /// @param handler  the procedure's name without the form's, such as "tbxQuote_Change"
    void handle(std::string handler, std::function<void()> procedure);
    /// @return false when nothing handles the event
    bool fire() const;

private:
    Form& form_;
    std::string handler_;
    std::function<void()> procedure_;
};

/// A named part of a form. Members of a control array carry their index in the name: "optAll(0)".
class Control {
public:
    /// Enrols itself in the form, which outlives it; so does the frame around it.
    Control(Form& form, std::string name, Frame* around = nullptr);
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;
    virtual ~Control() = default;

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] Form& form() const { return form_; }
    [[nodiscard]] Frame* around() const { return around_; }

    // The control's own flags. A control that is hidden or disabled loses the focus without its check.
    [[nodiscard]] bool visible() const { return visible_; }
    [[nodiscard]] bool enabled() const { return enabled_; }
    void set_visible(bool visible);
    void set_enabled(bool enabled);

    [[nodiscard]] bool is_shown() const;   ///< visible, and every frame around it too
    [[nodiscard]] bool is_usable() const;  ///< shown and enabled, and every frame around it too
    [[nodiscard]] bool is_inside(const Control& frame) const;
    [[nodiscard]] virtual bool takes_focus() const { return true; }

    [[nodiscard]] const std::string& tip() const { return tip_; }
    void set_tip(std::string tip) { tip_ = std::move(tip); }
    /// What a window writes beside a control that has no caption of its own, and a screen reader says.
    [[nodiscard]] const std::string& label() const { return label_; }
    void set_label(std::string label) { label_ = std::move(label); }

    /// A key in the control. @return false when the control has nothing for it
    bool press_key(std::string_view key);
    void on_key(std::string key, std::string handler, std::function<void()> procedure);

    /// Asked before the focus leaves for another control; false keeps it.
    std::function<bool()> check;
    Event got_focus{form_};
    Event lost_focus{form_};

    /// Something that a window shows of this control is different now.
    Notice<> changed;

    virtual void accept(ControlVisitor& visitor) const = 0;

private:
    Form& form_;
    std::string name_;
    Frame* around_;
    bool visible_ = true;
    bool enabled_ = true;
    std::string tip_;
    std::string label_;
    std::string key_;
    Event key_pressed_{form_};
};

}  // namespace velora::forms
