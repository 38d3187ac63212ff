#pragma once

#include <vector>

#include "forms/controls/control.h"

namespace velora::forms {

/// Nodes by key, in two or more levels.
class Tree final : public Control {
public:
    using Control::Control;

    struct Node {
        std::string key, text, parent;  ///< the parent of a first-level node is blank
        bool grey = false;
        bool expanded = false;
    };
    [[nodiscard]] const std::vector<Node>& nodes() const { return nodes_; }
    [[nodiscard]] const Node* find(std::string_view key) const;
    [[nodiscard]] bool has_children(std::string_view key) const;
    [[nodiscard]] const std::string& selected() const { return selected_; }  ///< blank for none
    void add(Node node);
    /// @throws Fault 35601 for a key that is not there; so do those below
    void set_grey(std::string_view key);

    /// By a procedure: fires nothing.
    void select(std::string_view key);
    /// By a person: fires `node_click`, also on the node that is selected already.
    void choose(std::string_view key);
    /// By whomever: fires `expand` when the node has children and is closed.
    void open(std::string_view key);
    void close(std::string_view key);                                          ///< fires nothing
    [[nodiscard]] const std::string& event_key() const { return event_key_; }  ///< the node of the latest event

    Event node_click{form()};
    Event expand{form()};
    void accept(ControlVisitor& visitor) const override;

private:
    Node& node(std::string_view key);

    std::vector<Node> nodes_;
    std::string selected_;
    std::string event_key_;
};

}  // namespace velora::forms
