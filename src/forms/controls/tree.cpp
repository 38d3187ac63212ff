#include "forms/controls/tree.h"

#include <algorithm>

#include "forms/controls/control_visitor.h"
#include "values/fault.h"

namespace velora::forms {

const Tree::Node* Tree::find(std::string_view key) const
{
    const auto found = std::ranges::find(nodes_, key, &Node::key);
    return found == nodes_.end() ? nullptr : &*found;
}

Tree::Node& Tree::node(std::string_view key)
{
    const auto found = std::ranges::find(nodes_, key, &Node::key);
    if (found == nodes_.end()) throw fault::of(fault::kNoSuchElement, std::string(key));
    return *found;
}

bool Tree::has_children(std::string_view key) const
{
    return std::ranges::find(nodes_, key, &Node::parent) != nodes_.end();
}

void Tree::add(Node node)
{
    nodes_.push_back(std::move(node));
    changed.tell();
}

void Tree::set_grey(std::string_view key)
{
    node(key).grey = true;
    changed.tell();
}

void Tree::select(std::string_view key)
{
    selected_ = node(key).key;
    changed.tell();
}

void Tree::choose(std::string_view key)
{
    select(key);
    event_key_ = key;
    node_click.fire();
}

void Tree::open(std::string_view key)
{
    Node& opened = node(key);
    if (opened.expanded || !has_children(key)) return;
    opened.expanded = true;
    event_key_ = key;
    changed.tell();
    expand.fire();
}

void Tree::close(std::string_view key)
{
    node(key).expanded = false;
    changed.tell();
}

void Tree::accept(ControlVisitor& visitor) const
{
    visitor.visit(*this);
}

}  // namespace velora::forms
