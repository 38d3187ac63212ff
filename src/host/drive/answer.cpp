#include "host/drive/answer.h"

#include <ostream>
#include <utility>

namespace velora::drive {

namespace {

struct ArgumentWriter {
    Json operator()(bool flag) const { return flag; }
    Json operator()(int32_t number) const { return number; }
    Json operator()(const std::string& text) const { return text; }
    Json operator()(const DateTime& date) const { return date.date_only().iso(); }
};

}  // namespace

void Answer::begin()
{
    begun_ = true;
    why_.clear();
    for (Json* part : {&boxes_, &opened_, &closed_, &runs_, &progress_, &state_}) *part = nullptr;
}

void Answer::write()
{
    if (!std::exchange(begun_, false)) return;
    Json line = {{"ok", why_.empty()}};
    if (!why_.empty()) line["why"] = why_;
    const auto add = [&](const char* key, Json& content) {
        if (!content.is_null()) line[key] = std::move(content);
    };
    add("boxes", boxes_);
    add("opened", opened_);
    add("closed", closed_);
    add("runs", runs_);
    add("progress", progress_);
    add("state", state_);
    out_ << line.dump(-1, ' ', false, Json::error_handler_t::replace) << std::endl;
}

void Answer::refuse(const std::string& why)
{
    why_ = why;
}

void Answer::add_box(const MessageBox& box)
{
    boxes_.push_back({{"title", box.title}, {"text", box.text}, {"icon", icon_name(box.icon)}});
}

void Answer::add_run(const forms::BuilderCall& call)
{
    Json arguments = Json::array();
    for (const auto& argument : call.arguments) arguments.push_back(std::visit(ArgumentWriter{}, argument));
    runs_.push_back({{"builder", call.builder}, {"arguments", std::move(arguments)}});
}

}  // namespace velora::drive
