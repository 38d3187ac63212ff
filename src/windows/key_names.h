#pragma once

#include <QKeyEvent>
#include <QKeySequence>
#include <string>

namespace velora::windows {

/// A key with its modifiers by the name that forms know it by: "F5", "Ctrl+P", "Return", "Escape".
inline std::string key_name(const QKeyEvent& event)
{
    const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (event.key() == Qt::Key_Enter || event.key() == Qt::Key_Return) return modifiers == 0 ? "Return" : "";
    if (event.key() == Qt::Key_Escape) return modifiers == 0 ? "Escape" : "";
    return QKeySequence(QKeyCombination(modifiers, static_cast<Qt::Key>(event.key())))
        .toString(QKeySequence::PortableText)
        .toStdString();
}

/// The other way round; none for a name that stands for no key.
inline QKeyCombination key_named(const std::string& name)
{
    const auto keys = QKeySequence::fromString(QString::fromStdString(name), QKeySequence::PortableText);
    return keys.count() == 1 ? keys[0] : QKeyCombination(Qt::Key_unknown);
}

}  // namespace velora::windows
