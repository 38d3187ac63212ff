#pragma once

#include <memory>

#include "windows/binding.h"

namespace velora::windows {

/// The binding for a control of any sort; null for menu entries and toolbar buttons, which are actions of the window.
/// @throws std::logic_error when the layout has another kind of widget for it
std::unique_ptr<Binding> bind(BoundForm& form, forms::Control& control, QWidget& widget);

}  // namespace velora::windows
