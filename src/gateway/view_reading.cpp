#include "gateway/view_reading.h"

#include "values/fault.h"
#include "values/text.h"

namespace velora {

OpenedView::OpenedView(SessionState& state, std::string_view view_id)
    : state_(state), id_(view_id), view_(accounting(state).OpenView(view_id, view_id.substr(0, 2)))
{
}

OpenedView::~OpenedView()
{
    view_->Close();
}

void OpenedView::browse(std::string_view filter, bool ascending)
{
    view_->Init();
    view_->Order(0);
    state_.log.filter(id_ + ": " + std::string(filter));
    view_->Browse(filter, ascending);
}

void OpenedView::browse_uncleared(std::string_view filter)
{
    state_.log.filter(id_ + ": " + std::string(filter));
    view_->Browse(filter, true);
}

void OpenedView::put_key(std::string_view field, std::string_view value)
{
    view_->PutWithoutVerification(field, Value(value));
    keys_.append(keys_.empty() ? "" : ", ").append(field).append(" = ").append(value);
}

bool OpenedView::read()
{
    state_.log.filter(id_ + ": " + (keys_.empty() ? "its one row" : "key " + keys_));
    return view_->Read();
}

std::string OpenedView::text(std::string_view name) const
{
    return trimmed_text(view_->field(name));
}

double OpenedView::number(std::string_view name) const
{
    return to_number(view_->field(name));
}

void compose(OpenedView& view, size_t slots, std::initializer_list<std::pair<size_t, OpenedView*>> partners)
{
    std::vector<View*> array(slots, nullptr);
    for (const auto& [slot, partner] : partners) array.at(slot) = partner->view();
    view.view()->Compose(array);
}

ViewRow::ViewRow(const OpenedView& view, std::span<const std::string_view> fields)
{
    for (const auto name : fields) fields_.emplace(name, view.field(name));
}

const Value& ViewRow::field(std::string_view name) const
{
    const auto found = fields_.find(name);
    if (found == fields_.end()) throw fault::no_such_column(std::string(name));
    return found->second;
}

std::string filter_text(std::string_view value)
{
    return std::string("\"").append(replaced(value, "\"", "\"\"")).append("\"");
}

}  // namespace velora
