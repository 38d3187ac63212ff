#include "windows/binding.h"

#include <QSignalBlocker>

#include "windows/texts.h"

namespace velora::windows {

Binding::Binding(BoundForm& form, forms::Control& control, QWidget& widget)
    : form_(form), control_(control), widget_(widget)
{
    watch(control.changed, [this] { show(); });
    // A click asks the form before it moves the focus, so the toolkit alone moves it for the Tab key at most.
    const auto only_by_tab = [](QWidget& part) {
        if ((part.focusPolicy() & Qt::ClickFocus) != 0) part.setFocusPolicy(Qt::TabFocus);
    };
    only_by_tab(widget);
    for (auto* part : widget.findChildren<QWidget*>()) only_by_tab(*part);
}

void Binding::detach()
{
    for (const auto& forget : std::exchange(forget_, {})) forget();
}

void Binding::show()
{
    form_.without_focus_moves([this] {
        const QSignalBlocker silent(widget_);
        widget_.setEnabled(control_.enabled());
        widget_.setVisible(control_.visible());
        widget_.setToolTip(shown(control_.tip()));
        show_more();
    });
}

void Binding::act(const std::function<void()>& what)
{
    if (form_.is_detached()) return;
    form_.act(what);
    if (!form_.is_detached()) show();
}

}  // namespace velora::windows
