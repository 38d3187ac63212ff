#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "forms/controls/notice.h"

namespace velora::forms {

class Control;
class ControlVisitor;

/// What controls ask of the form on which they stand.
class ControlHolder {
public:
    ControlHolder() = default;
    ControlHolder(const ControlHolder&) = delete;
    ControlHolder& operator=(const ControlHolder&) = delete;
    virtual ~ControlHolder() = default;

    /// In the order in which they were declared, which is the order of the Tab key.
    [[nodiscard]] virtual const std::vector<Control*>& controls() const = 0;
    /// Moves the focus, if the check of the box that has it lets go. False when it stays where it was.
    virtual bool enter(Control& control) = 0;
    /// Presses the button or menu entry that a key stands for. False when the key means nothing here.
    virtual bool press_shortcut(std::string_view key) = 0;
    /// Runs a procedure of the form; a fault in it ends it and is told under "form.handler", a number of the form left
    /// out.
    virtual void run(const std::string& handler, const std::function<void()>& procedure) = 0;

protected:
    friend class Control;
    virtual void enrol(Control& control) = 0;
    virtual void release_focus_within(const Control& gone) = 0;
};

/// Something happens to a control and the form's procedure for it runs. A fault in the procedure ends it and is told
/// by the form; it never reaches the one who made the event happen.
class Event {
public:
    explicit Event(ControlHolder& form) : form_(form) {}

    /// @param handler  the procedure's name without the form's, such as "tbxQuote_Change"
    void handle(std::string handler, std::function<void()> procedure);
    /// @return false when nothing handles the event
    bool fire() const;

private:
    ControlHolder& form_;
    std::string handler_;
    std::function<void()> procedure_;
};

/// A named part of a form. Members of a control array carry their index in the name: "optAll(0)".
class Control {
    ControlHolder& form_;  // before the events, which are made with it

public:
    /// Enrols itself in the form, which outlives it; so does the frame around it.
    Control(ControlHolder& form, std::string name, const Control* around = nullptr);
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;
    virtual ~Control() = default;

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] ControlHolder& form() const { return form_; }
    [[nodiscard]] const Control* around() const { return around_; }  ///< a frame; null for none

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
    virtual bool press_key(std::string_view key);
    /// Presses the control if the key stands for it from anywhere in the form. @return false when it does not
    virtual bool press_shortcut(std::string_view) { return false; }
    [[nodiscard]] virtual bool has_shortcut(std::string_view) const { return false; }
    [[nodiscard]] virtual bool has_key(std::string_view key) const { return !key.empty() && key == key_; }
    void on_key(std::string key, std::string handler, std::function<void()> procedure);

    /// Asked before the focus leaves for another control; false keeps it.
    std::function<bool()> check;
    Event got_focus{form_};
    Event lost_focus{form_};

    /// Something that a window shows of this control is different now.
    Notice<> changed;

    virtual void accept(ControlVisitor& visitor) const = 0;

private:
    std::string name_;
    const Control* around_;
    bool visible_ = true;
    bool enabled_ = true;
    std::string tip_;
    std::string label_;
    std::string key_;
    Event key_pressed_{form_};
};

}  // namespace velora::forms
