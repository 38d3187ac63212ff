#include "host/drive/scripted_user.h"

#include <algorithm>
#include <array>

namespace velora::drive {

namespace {

constexpr auto kSorts = std::to_array<std::string_view>({"file", "folder", "quote", "customer", "accounting customer"});

std::string text_of(const Json& value)
{
    if (value.is_string()) return value.get<std::string>();
    return value.is_number_integer() ? value.dump() : std::string();
}

}  // namespace

bool ScriptedUser::queue(const std::string& sort, const Json& value)
{
    if (std::ranges::find(kSorts, sort) == kSorts.end()) return false;
    answers_[sort].push_back(value);
    return true;
}

std::optional<Json> ScriptedUser::next(const std::string& sort)
{
    auto& queued = answers_[sort];
    if (queued.empty()) return std::nullopt;
    Json answer = std::move(queued.front());
    queued.pop_front();
    return answer;
}

void ScriptedUser::show(const MessageBox& box)
{
    if (on_box) on_box(box);
    below_.show(box);
    if (windows_ != nullptr) windows_->show(box);
}

void ScriptedUser::show_pages(std::shared_ptr<PageView> pages, const std::string& caption)
{
    if (on_pages) on_pages(std::move(pages), caption);
}

std::optional<std::vector<std::string>> ScriptedUser::choose_files(const FileQuestion&)
{
    const auto answer = next("file");
    if (!answer || answer->is_null()) return std::nullopt;
    std::vector<std::string> files;
    if (!answer->is_array()) return std::vector{text_of(*answer)};
    for (const Json& file : *answer) files.push_back(text_of(file));
    return files;
}

std::optional<std::string> ScriptedUser::choose_folder(const FolderQuestion&)
{
    const auto answer = next("folder");
    if (!answer || answer->is_null()) return std::nullopt;
    return text_of(*answer);
}

std::optional<std::string> ScriptedUser::choose_target(const FileQuestion& question)
{
    const auto files = choose_files(question);
    if (!files || files->empty()) return std::nullopt;
    return files->front();
}

bool ScriptedUser::answer_finder(forms::FinderSort sort, std::string& answer)
{
    static constexpr std::array kNames{"quote", "customer", "accounting customer"};
    const auto queued = next(kNames.at(static_cast<size_t>(sort)));
    if (!queued) return false;
    answer = text_of(*queued);
    return true;
}

}  // namespace velora::drive
