#pragma once

namespace velora::forms {

class Button;
class CheckBox;
class DropDown;
class Frame;
class Label;
class ListBox;
class ListView;
class MenuEntry;
class MonthView;
class OptionButton;
class PageArea;
class TextBox;
class ToolButton;
class Tree;

/// Tells the sorts of controls apart.
class ControlVisitor {
public:
    virtual ~ControlVisitor() = default;
    virtual void visit(const Button&) = 0;
    virtual void visit(const CheckBox&) = 0;
    virtual void visit(const DropDown&) = 0;
    virtual void visit(const Frame&) = 0;
    virtual void visit(const Label&) = 0;
    virtual void visit(const ListBox&) = 0;
    virtual void visit(const ListView&) = 0;
    virtual void visit(const MenuEntry&) = 0;
    virtual void visit(const MonthView&) = 0;
    virtual void visit(const OptionButton&) = 0;
    virtual void visit(const PageArea&) = 0;
    virtual void visit(const TextBox&) = 0;
    virtual void visit(const ToolButton&) = 0;
    virtual void visit(const Tree&) = 0;
};

}  // namespace velora::forms
