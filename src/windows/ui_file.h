#pragma once

#include <QString>
#include <functional>

class QMainWindow;
class QWidget;

namespace velora::windows {

/// Fills a window from the layout of its form, a ".ui" file among the resources. The names of the file's objects stay
/// as they are written, since they are those of the form's controls ("optAll(0)").
/// @param make  gives the widgets of classes that are our own; null for a class that it does not know
/// @throws std::logic_error for a file that is not there or holds what this reader does not know
void load_ui(const QString& file, QMainWindow& window,
             const std::function<QWidget*(const QString& class_name, QWidget* parent)>& make);

}  // namespace velora::windows
