#pragma once

#include <QIcon>
#include <QPalette>
#include <string>

namespace velora::windows {

/// The icon of a control, drawn in the colour of the palette's texts; a null one where the resources hold none under
/// the control's name.
QIcon icon_of(const std::string& control, const QPalette& palette);

}  // namespace velora::windows
