#pragma once

#include <string>

#include "forms/controls/buttons.h"
#include "forms/controls/form.h"
#include "forms/controls/lists.h"
#include "forms/controls/month_view.h"
#include "forms/controls/text_box.h"
#include "forms/controls/tree.h"

namespace velora::forms {

/// What a person does to a form. These hands reach the controls themselves; a toolkit's reach the widgets that show
/// them. Whoever acts has seen to it that the control can be used.
class Hands {
public:
    Hands() = default;
    Hands(const Hands&) = delete;
    Hands& operator=(const Hands&) = delete;
    virtual ~Hands() = default;

    /// Moves the focus; false when it stays where it was.
    virtual bool enter(Control& control) { return control.form().enter(control); }

    // The control has the focus, if it is one that takes it.
    virtual void type(TextBox& box, const std::string& text) { box.type(text); }
    virtual void press(Button& button) { button.press(); }
    virtual void press(CheckBox& box) { box.press(); }
    virtual void press(OptionButton& option) { option.press(); }
    virtual void press(Clickable& clickable) { clickable.press(); }
    virtual void choose(RowChoice& rows, int index) { rows.choose(index); }
    virtual void choose(Tree& tree, const std::string& key) { tree.choose(key); }
    virtual void open(Tree& tree, const std::string& key) { tree.open(key); }
    virtual void pick(MonthView& month, const DateTime& date) { month.pick(date); }
    virtual void press_key(Control& control, const std::string& key)
    {
        if (!control.press_key(key)) control.form().press_shortcut(key);
    }
    virtual void close(Form& form) { form.unload(); }
};

}  // namespace velora::forms
