#include "windows/texts.h"

#include "forms/controls/buttons.h"

namespace velora::windows {

QString with_mnemonic(const std::string& caption, QChar letter)
{
    QString marked;
    bool done = letter.isNull();
    for (const QChar each : shown(caption)) {
        if (!done && each.toLower() == letter) {
            marked += '&';
            done = true;
        }
        if (each == '&') marked += '&';  // one that is to be seen
        marked += each;
    }
    return marked;
}

void Mnemonics::take_marked(const std::string& caption)
{
    const QString text = shown(caption);
    const auto mark = text.indexOf('&');
    if (mark >= 0 && mark + 1 < text.size()) taken_.insert(text[mark + 1].toLower());
}

QChar Mnemonics::choose(const std::string& caption)
{
    const QString text = shown(caption).toLower();
    const auto free = [&](QChar letter) { return letter.isLetterOrNumber() && !taken_.contains(letter); };
    for (const bool only_first : {true, false}) {
        for (qsizetype at = 0; at < text.size(); ++at) {
            const bool is_first = at == 0 || text[at - 1].isSpace();
            if ((!only_first || is_first) && free(text[at])) return *taken_.insert(text[at]).first;
        }
    }
    return {};
}

void name_for_readers(QWidget& widget, const std::string& name, const std::string& description)
{
    widget.setAccessibleName(shown(name));
    widget.setAccessibleDescription(shown(description));
}

void paint_back(QWidget& widget, forms::Back back)
{
    const bool is_face = back == forms::Back::Face;
    if (widget.property("face").toBool() == is_face) return;
    widget.setProperty("face", is_face);
    QPalette palette;
    if (is_face) palette.setColor(QPalette::Base, palette.color(QPalette::Window));
    widget.setPalette(is_face ? palette : QPalette());
}

const std::string& caption_of(const forms::Control& control)
{
    const auto* captioned = dynamic_cast<const forms::Captioned*>(&control);
    const auto* button = dynamic_cast<const forms::Button*>(&control);
    if (captioned != nullptr) return captioned->caption();
    return button != nullptr ? button->caption() : control.label();
}

}  // namespace velora::windows
