#pragma once

#include <QString>
#include <QWidget>
#include <set>
#include <string>

#include "forms/controls/text_box.h"

namespace velora::windows {

inline QString shown(const std::string& text)
{
    return QString::fromStdString(text);
}

/// A caption with the mark before the letter that goes with Alt, if there is one in it.
QString with_mnemonic(const std::string& caption, QChar letter);

/// Gives out a letter of each caption that no other has, first letters of words before others.
class Mnemonics {
public:
    /// A letter that is taken already: that behind the mark in the caption of a menu.
    void take_marked(const std::string& caption);
    /// @return a null letter where all are taken
    QChar choose(const std::string& caption);

private:
    std::set<QChar> taken_;
};

/// What a screen reader says of a widget.
void name_for_readers(QWidget& widget, const std::string& name, const std::string& description);

void paint_back(QWidget& widget, forms::Back back);

/// What a person reads on the control, or beside it.
const std::string& caption_of(const forms::Control& control);

}  // namespace velora::windows
