#pragma once

#include "forms/controls/control.h"

namespace velora::forms {

/// The colours that the forms set.
enum class Back : uint8_t { Window, Face };

/// A box for text, of one line or of several.
class TextBox final : public Control {
public:
    using Control::Control;

    [[nodiscard]] const std::string& text() const { return text_; }
    /// By a procedure: fires `change` only if the text differs.
    void set_text(const std::string& text);
    /// By a person: fires `change` unless the box is empty before and after.
    void type(const std::string& text);

    [[nodiscard]] Back back() const { return back_; }
    void set_back(Back back);
    void select_all() const { all_selected.tell(); }

    bool several_lines = false;
    bool secret = false;    ///< shown as dots
    bool on_enter = false;  ///< what a person types counts when the Enter key is pressed

    Event change{form()};
    Notice<> all_selected;

    void accept(ControlVisitor& visitor) const override;

private:
    void replace(const std::string& text);

    std::string text_;
    Back back_ = Back::Window;
};

}  // namespace velora::forms
