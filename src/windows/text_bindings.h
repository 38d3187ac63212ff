#pragma once

#include "forms/controls/text_box.h"
#include "windows/binding.h"

class QLineEdit;
class QPlainTextEdit;

namespace velora::windows {

/// A box for one line.
class LineBinding final : public Binding {
public:
    LineBinding(BoundForm& form, forms::TextBox& box, QLineEdit& widget);
    bool take_key(QKeyEvent& key) override;
    [[nodiscard]] bool has_own_menu() const override { return true; }

private:
    void show_more() override;

    forms::TextBox& box_;
    QLineEdit& widget_;
};

/// A box for several lines. The widget knows one line end only; a text that differs from the control's in nothing else
/// is no change.
class PlainTextBinding final : public Binding {
public:
    PlainTextBinding(BoundForm& form, forms::TextBox& box, QPlainTextEdit& widget);
    [[nodiscard]] bool has_own_menu() const override { return true; }

    /// What is about to be put in as it stands, with the line ends that it has.
    void expect(const std::string& text) { expected_ = text; }

private:
    void show_more() override;
    void changed();
    [[nodiscard]] std::string text() const;

    forms::TextBox& box_;
    QPlainTextEdit& widget_;
    std::string expected_;
};

}  // namespace velora::windows
