#include "windows/binder.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <stdexcept>

#include "forms/controls/buttons.h"
#include "forms/controls/control_visitor.h"
#include "forms/controls/lists.h"
#include "windows/icons.h"
#include "windows/page_binding.h"
#include "windows/rows_binding.h"
#include "windows/text_bindings.h"
#include "windows/texts.h"
#include "windows/tree_and_month.h"

namespace velora::windows {

namespace {

/// A letter of the caption that goes with Alt.
template <class Base>
class WithMnemonic : public Base {
public:
    using Base::Base;
    void set_mnemonic(QChar letter) override { mnemonic_ = letter; }
    [[nodiscard]] bool wants_mnemonic() const override { return true; }

protected:
    [[nodiscard]] QString caption(const std::string& text) const { return with_mnemonic(text, mnemonic_); }

private:
    QChar mnemonic_;
};

/// Push button, check box or option button.
template <class Sort, class Widget>
class ButtonBinding final : public WithMnemonic<Binding> {
public:
    ButtonBinding(BoundForm& of, Sort& control, Widget& widget)
        : WithMnemonic(of, control, widget), control_(control), widget_(widget)
    {
        QObject::connect(&widget, &QAbstractButton::clicked, &widget, [this] {
            act([this] {
                if (form().enter(control_)) control_.press();
            });
        });
        if constexpr (std::is_same_v<Sort, forms::Button>) widget.setAutoDefault(false);
    }

private:
    void show_more() override
    {
        widget_.setText(caption(control_.caption()));
        name_for_readers(widget_, control_.caption().empty() ? control_.tip() : control_.caption(), control_.tip());
        if constexpr (std::is_same_v<Sort, forms::Button>) {
            widget_.setIcon(icon_of(control_.name(), widget_.palette()));
        } else {
            show_value();
        }
    }
    void show_value()
    {
        if constexpr (std::is_same_v<Sort, forms::CheckBox>) {
            constexpr std::array kStates{Qt::Unchecked, Qt::Checked, Qt::PartiallyChecked};
            widget_.setCheckState(kStates.at(static_cast<size_t>(control_.value())));
        }
        if constexpr (std::is_same_v<Sort, forms::OptionButton>) {
            widget_.setAutoExclusive(false);  // else the one that is set could not be cleared
            widget_.setChecked(control_.value());
            widget_.setAutoExclusive(true);
        }
    }

    Sort& control_;
    Widget& widget_;
};

class LabelBinding final : public WithMnemonic<Binding> {
public:
    LabelBinding(BoundForm& form, forms::Label& label, QLabel& widget)
        : WithMnemonic(form, label, widget), label_(label), widget_(widget)
    {
        widget.setTextFormat(widget.buddy() != nullptr ? Qt::AutoText : Qt::PlainText);
    }
    [[nodiscard]] bool wants_mnemonic() const override { return widget_.buddy() != nullptr; }

private:
    void show_more() override
    {
        widget_.setText(widget_.buddy() != nullptr ? caption(label_.caption()) : shown(label_.caption()));
        name_for_readers(widget_, label_.caption().empty() ? label_.label() : label_.caption(), {});
    }

    forms::Label& label_;
    QLabel& widget_;
};

class FrameBinding final : public Binding {
public:
    FrameBinding(BoundForm& form, forms::Frame& frame, QGroupBox& widget)
        : Binding(form, frame, widget), frame_(frame), widget_(widget)
    {
        // Frames share a place, of which the largest decides the size, so that the window does not jump.
        auto policy = widget.sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        widget.setSizePolicy(policy);
        widget.setAutoFillBackground(true);  // what stands behind it is covered
    }

private:
    void show_more() override
    {
        widget_.setTitle(with_mnemonic(frame_.caption(), {}));
        name_for_readers(widget_, frame_.caption(), {});
    }

    forms::Frame& frame_;
    QGroupBox& widget_;
};

class DropDownBinding final : public Binding {
public:
    DropDownBinding(BoundForm& form, forms::DropDown& list, QComboBox& widget)
        : Binding(form, list, widget), list_(list), widget_(widget)
    {
        QObject::connect(&widget, &QComboBox::activated, &widget,
                         [this](int row) { act([this, row] { list_.choose(row); }); });
        widget.setSizeAdjustPolicy(QComboBox::AdjustToContents);
    }
    [[nodiscard]] bool has_own_menu() const override { return true; }

private:
    void show_more() override
    {
        const auto& items = list_.items();
        while (widget_.count() > list_.count()) widget_.removeItem(widget_.count() - 1);
        for (int row = 0; row < list_.count(); ++row) {
            const QString text = shown(items[static_cast<size_t>(row)].text);
            if (row == widget_.count()) widget_.addItem(text);
            if (widget_.itemText(row) != text) widget_.setItemText(row, text);
        }
        widget_.setCurrentIndex(list_.selected());
        paint_back(widget_, list_.back());
        name_for_readers(widget_, list_.label(), list_.tip());
    }

    forms::DropDown& list_;
    QComboBox& widget_;
};

/// Makes the binding for the sort of control that it meets.
class Binder final : public forms::ControlVisitor {
public:
    Binder(BoundForm& form, forms::Control& control, QWidget& widget) : form_(form), control_(control), widget_(widget)
    {
    }

    void visit(const forms::Button&) override
    {
        take<forms::Button, QPushButton, ButtonBinding<forms::Button, QPushButton>>();
    }
    void visit(const forms::CheckBox&) override
    {
        take<forms::CheckBox, QCheckBox, ButtonBinding<forms::CheckBox, QCheckBox>>();
    }
    void visit(const forms::OptionButton&) override
    {
        take<forms::OptionButton, QRadioButton, ButtonBinding<forms::OptionButton, QRadioButton>>();
    }
    void visit(const forms::Label&) override { take<forms::Label, QLabel, LabelBinding>(); }
    void visit(const forms::Frame&) override { take<forms::Frame, QGroupBox, FrameBinding>(); }
    void visit(const forms::DropDown&) override { take<forms::DropDown, QComboBox, DropDownBinding>(); }
    void visit(const forms::ListBox&) override { take<forms::ListBox, QTreeView, RowsBinding>(); }
    void visit(const forms::ListView&) override { take<forms::ListView, QTreeView, RowsBinding>(); }
    void visit(const forms::Tree&) override { take<forms::Tree, QTreeWidget, TreeBinding>(); }
    void visit(const forms::MonthView&) override { take<forms::MonthView, QCalendarWidget, MonthBinding>(); }
    void visit(const forms::TextBox&) override
    {
        if (qobject_cast<QPlainTextEdit*>(&widget_) != nullptr) {
            return take<forms::TextBox, QPlainTextEdit, PlainTextBinding>();
        }
        take<forms::TextBox, QLineEdit, LineBinding>();
    }
    void visit(const forms::PageArea&) override { take<forms::PageArea, PageArea, PageBinding>(); }
    void visit(const forms::MenuEntry&) override {}   // these two are actions
    void visit(const forms::ToolButton&) override {}  // of the window

    std::unique_ptr<Binding> made;

private:
    template <class Sort, class Widget, class Made>
    void take()
    {
        auto* widget = dynamic_cast<Widget*>(&widget_);
        if (widget == nullptr) throw std::logic_error(control_.name() + " has a widget of another kind");
        made = std::make_unique<Made>(form_, dynamic_cast<Sort&>(control_), *widget);
    }

    BoundForm& form_;
    forms::Control& control_;
    QWidget& widget_;
};

}  // namespace

std::unique_ptr<Binding> bind(BoundForm& form, forms::Control& control, QWidget& widget)
{
    Binder binder(form, control, widget);
    control.accept(binder);
    return std::move(binder.made);
}

}  // namespace velora::windows
