#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "forms/controls/control.h"
#include "values/fault.h"

namespace velora::forms {

class MenuEntry;
class ToolButton;

/// A menu of the menu bar, or the one that a right click brings up.
struct Menu {
    std::string caption;  ///< an "&" stands before the letter that opens it
    std::vector<MenuEntry*> entries;
};

/// The keys that stand for a form's button to accept and its button to give up.
inline constexpr std::string_view kAcceptKey = "Return";
inline constexpr std::string_view kGiveUpKey = "Escape";

/// The shapes of the mouse pointer that the forms set.
enum class Pointer : uint8_t { Default = 0, Hourglass = 11 };

/// A window as values: its controls by name, the focus among them, and what happens in it.
class Form : public ControlHolder {
public:
    explicit Form(std::string name) : name_(std::move(name)) {}

    /// The sort of form, and behind a blank which of several it is.
    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] const std::string& caption() const { return caption_; }
    void set_caption(const std::string& caption);
    [[nodiscard]] int height() const { return height_; }  ///< in twips
    void set_height(int twips);
    [[nodiscard]] Pointer pointer() const { return pointer_; }
    void set_pointer(Pointer pointer);

    [[nodiscard]] const std::vector<Control*>& controls() const override { return controls_; }
    [[nodiscard]] Control* find(std::string_view name) const;

    [[nodiscard]] Control* focus() const { return focus_; }  ///< null when it is nowhere
    bool enter(Control& control) override;
    bool press_shortcut(std::string_view key) override;
    [[nodiscard]] bool has_shortcut(std::string_view key) const;

    std::vector<Menu> menus;
    Menu popup;  ///< for a right click; without entries there is none
    std::vector<ToolButton*> toolbar;

    /// What the form does before it is first shown, and the control that then has the focus.
    virtual void load() {}
    [[nodiscard]] virtual Control* first_focus() { return nullptr; }
    /// The person's close box, or a procedure: the window goes away. Nothing is checked.
    void unload();
    /// What is dropped with the window.
    virtual void unloaded() {}
    [[nodiscard]] bool is_unloaded() const { return unloaded_; }

    void run(const std::string& handler, const std::function<void()>& procedure) override;
    /// Who tells a fault of a handler, and who takes an unloaded form off the screen.
    std::function<void(const std::string& procedure, const Fault& caught)> tell_fault;
    std::function<void()> take_away;

    Notice<> changed;  ///< caption, height or pointer
    Notice<> focus_changed;

private:
    void enrol(Control& control) override { controls_.push_back(&control); }
    void release_focus_within(const Control& gone) override;
    void move_focus(Control* to);

    std::string name_;
    std::string caption_;
    int height_ = 0;
    Pointer pointer_ = Pointer::Default;
    std::vector<Control*> controls_;
    Control* focus_ = nullptr;
    bool unloaded_ = false;
};

}  // namespace velora::forms
