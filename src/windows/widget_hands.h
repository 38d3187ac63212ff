#pragma once

#include <QWidget>

#include "forms/hands.h"
#include "windows/shown_windows.h"

class QAction;
class QComboBox;

namespace velora::windows {

/// Acts on the widgets as a person does, by keys and clicks that go the whole way through the toolkit. What cannot be
/// reached that way, such as a node whose parent is closed, is handed to the control.
class WidgetHands final : public forms::Hands {
public:
    explicit WidgetHands(ShownWindows& windows) : windows_(windows) {}

    bool enter(forms::Control& control) override;
    void type(forms::TextBox& box, const std::string& text) override;
    void press(forms::Button& button) override;
    void press(forms::CheckBox& box) override;
    void press(forms::OptionButton& option) override;
    void press(forms::Clickable& clickable) override;
    void choose(forms::RowChoice& rows, int index) override;
    void choose(forms::Tree& tree, const std::string& key) override;
    void open(forms::Tree& tree, const std::string& key) override;
    void pick(forms::MonthView& month, const DateTime& date) override;
    void press_key(forms::Control& control, const std::string& key) override;
    void close(forms::Form& form) override;

    /// How often a control had to be handed something that no key or click could bring.
    [[nodiscard]] size_t handed_over() const { return handed_over_; }

private:
    template <class Sort>
    void press_widget(Sort& control);
    bool click(QWidget& widget, const QPoint& at);
    bool click_entry(FormWindow& window, QAction& action);
    bool choose_item(QComboBox& box, int index);
    void hand_over(const std::function<void()>& what);
    void finish();
    Binding* binding_of(const forms::Control& control) const;

    ShownWindows& windows_;
    size_t handed_over_ = 0;
};

}  // namespace velora::windows
