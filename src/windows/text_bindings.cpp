#include "windows/text_bindings.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <limits>

#include "windows/texts.h"

namespace velora::windows {

namespace {

/// As a box of several lines holds it.
QString with_plain_line_ends(const std::string& text)
{
    return shown(text).replace("\r\n", "\n").replace('\r', '\n').replace(QChar::ParagraphSeparator, '\n');
}

}  // namespace

LineBinding::LineBinding(BoundForm& form, forms::TextBox& box, QLineEdit& widget)
    : Binding(form, box, widget), box_(box), widget_(widget)
{
    watch(box.all_selected, [&widget] { widget.selectAll(); });
    widget.setMaxLength(std::numeric_limits<int>::max());
    if (box.secret) widget.setEchoMode(QLineEdit::Password);
    QObject::connect(&widget, &QLineEdit::textEdited, &widget, [this](const QString& text) {
        if (!box_.on_enter) act([&] { box_.type(text.toStdString()); });
    });
}

bool LineBinding::take_key(QKeyEvent& key)
{
    if (!box_.on_enter || (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter)) return false;
    act([this] { box_.type(widget_.text().toStdString()); });
    return true;
}

void LineBinding::show_more()
{
    if (const QString text = shown(box_.text()); widget_.text() != text) widget_.setText(text);
    paint_back(widget_, box_.back());
    name_for_readers(widget_, box_.label(), box_.tip());
}

PlainTextBinding::PlainTextBinding(BoundForm& form, forms::TextBox& box, QPlainTextEdit& widget)
    : Binding(form, box, widget), box_(box), widget_(widget)
{
    watch(box.all_selected, [&widget] { widget.selectAll(); });
    widget.setTabChangesFocus(true);
    QObject::connect(&widget, &QPlainTextEdit::textChanged, &widget, [this] { changed(); });
}

void PlainTextBinding::changed()
{
    const std::string expected = std::exchange(expected_, {});
    const std::string typed = text();
    const bool as_expected = with_plain_line_ends(expected) == shown(typed);
    act([&] { box_.type(as_expected ? expected : typed); });
}

/// As it stands, blanks that do not break and all.
std::string PlainTextBinding::text() const
{
    QString raw = widget_.document()->toRawText();
    return raw.replace(QChar::ParagraphSeparator, '\n').toStdString();
}

void PlainTextBinding::show_more()
{
    if (const QString text = with_plain_line_ends(box_.text()); shown(this->text()) != text) {
        widget_.setPlainText(text);
    }
    paint_back(widget_, box_.back());
    name_for_readers(widget_, box_.label(), box_.tip());
}

}  // namespace velora::windows
