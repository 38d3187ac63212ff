#include "host/drive/form_state.h"

#include "forms/controls/buttons.h"
#include "forms/controls/control_visitor.h"
#include "forms/controls/lists.h"
#include "forms/controls/month_view.h"
#include "forms/controls/page_area.h"
#include "forms/controls/tree.h"
#include "forms/frm_viewer.h"

namespace velora::drive {

namespace {

using namespace forms;

const char* back_name(Back back)
{
    return back == Back::Window ? "window" : "face";
}

/// What each sort of control shows beside its two flags.
class Writer final : public ControlVisitor {
public:
    static Json of(const Control& control)
    {
        Writer writer;
        writer.json_ = {{"visible", control.visible()}, {"enabled", control.enabled()}};
        control.accept(writer);
        return std::move(writer.json_);
    }

    void visit(const Button& button) override { json_["tip"] = button.tip(); }
    void visit(const CheckBox& box) override
    {
        json_["caption"] = box.caption();
        json_["value"] = box.value();
    }
    void visit(const DropDown& list) override
    {
        Json items = Json::array();
        Json data = Json::array();
        for (const auto& item : list.items()) {
            items.push_back(item.text);
            data.push_back(item.data);
        }
        json_["items"] = std::move(items);
        json_["data"] = std::move(data);
        json_["selected"] = list.selected();
        json_["back"] = back_name(list.back());
    }
    void visit(const Frame& frame) override { json_["caption"] = frame.caption(); }
    void visit(const Label& label) override { json_["caption"] = label.caption(); }
    void visit(const ListBox& list) override
    {
        json_["items"] = list.items();
        json_["selected"] = list.selected();
    }
    void visit(const ListView& list) override
    {
        json_["rows"] = list.rows();
        json_["selected"] = list.selected();
    }
    void visit(const MenuEntry& entry) override { json_["caption"] = entry.caption(); }
    void visit(const MonthView& month) override { json_["date"] = month.date().date_only().iso(); }
    void visit(const OptionButton& option) override
    {
        json_["caption"] = option.caption();
        json_["value"] = option.value();
    }
    void visit(const PageArea&) override {}
    void visit(const TextBox& box) override
    {
        json_["text"] = box.text();
        json_["back"] = back_name(box.back());
    }
    void visit(const ToolButton& button) override { json_["caption"] = button.caption(); }
    void visit(const Tree& tree) override
    {
        Json nodes = Json::array();
        Json expanded = Json::array();
        for (const auto& node : tree.nodes()) {
            nodes.push_back({{"key", node.key}, {"text", node.text}, {"parent", node.parent}, {"grey", node.grey}});
            if (node.expanded) expanded.push_back(node.key);
        }
        json_["nodes"] = std::move(nodes);
        json_["selected"] = tree.selected();
        json_["expanded"] = std::move(expanded);
    }

private:
    Json json_;
};

void add_viewer(Json& state, const frmViewer& viewer)
{
    state["page"] = viewer.page();
    state["pages"] = viewer.page_count();
    state["zoom"] = viewer.zoom();
    state["search"] = viewer.searched();
    state["matches"] = viewer.matches();
    Json tree = Json::array();
    for (const auto& entry : viewer.tree()) {
        tree.push_back({{"text", entry.text}, {"page", entry.page + 1}, {"level", entry.level}});
    }
    state["tree"] = std::move(tree);
}

}  // namespace

Json form_state(const Form& form, bool is_modal)
{
    Json state = {{"form", form.name()}, {"caption", form.caption()}, {"height", form.height()}, {"modal", is_modal}};
    state["focus"] = form.focus() != nullptr ? Json(form.focus()->name()) : Json(nullptr);
    Json controls = Json::object();
    for (const Control* control : form.controls()) controls[control->name()] = Writer::of(*control);
    state["controls"] = std::move(controls);
    if (const auto* viewer = dynamic_cast<const frmViewer*>(&form)) add_viewer(state, *viewer);
    return state;
}

}  // namespace velora::drive
