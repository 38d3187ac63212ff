#pragma once

#include <unordered_map>
#include <utility>
#include <vector>

#include "forms/controls/buttons.h"
#include "forms/controls/form.h"
#include "windows/window_owner.h"

class QAction;
class QMainWindow;
class QMenu;
class QPoint;
class QToolBar;

namespace velora::windows {

/// The menus, the context menu and the tool bar of a form: an action of the toolkit for each entry and button.
class FormActions {
public:
    FormActions(QMainWindow& window, WindowOwner& owner, forms::Form& form);
    FormActions(const FormActions&) = delete;
    FormActions& operator=(const FormActions&) = delete;

    /// Forgets the form, which may be gone from now on.
    void detach();
    [[nodiscard]] QAction* action_of(const forms::Control& control) const;
    [[nodiscard]] QToolBar* tool_bar() const { return tool_bar_; }  ///< null for a dialog
    [[nodiscard]] QMenu* popup() const { return popup_; }           ///< null for a form without a context menu
    /// @return whether the form has a context menu
    bool show_popup(const QPoint& at);
    /// The colours of the surroundings have changed.
    void refresh_icons();

private:
    void add_menus();
    QAction* add_action(QMenu& menu, forms::Control& control);
    void add_tool_bar();
    void add_tool(forms::ToolButton& button);
    void add_tool_box(const forms::Control& box);

    QMainWindow& window_;
    WindowOwner& owner_;
    forms::Form& form_;
    std::unordered_map<const forms::Control*, QAction*> actions_;
    std::vector<std::pair<forms::Control*, size_t>> watches_;
    QToolBar* tool_bar_ = nullptr;
    QMenu* popup_ = nullptr;
    bool detached_ = false;
};

}  // namespace velora::windows
