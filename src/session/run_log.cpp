#include "session/run_log.h"

#include <algorithm>

namespace velora {

namespace {
constexpr size_t kMostEntries = 100'000;  // a run over a million rows must not fill the memory with its log
}

bool RunLog::has_room()
{
    if (tolerated_.size() + cuts_.size() < kMostEntries) return true;
    ++dropped_;
    return false;
}

void RunLog::tolerated(size_t row, std::string_view field, int32_t number)
{
    if (has_room()) tolerated_.push_back({row, std::string(field), number});
}

void RunLog::cut(size_t row, std::string_view field, size_t from, size_t to)
{
    if (has_room()) cuts_.push_back({row, std::string(field), from, to});
}

void RunLog::count(std::vector<Counted>& list, Positions& positions, std::string_view text)
{
    const auto [entry, is_new] = positions.try_emplace(std::string(text), list.size());
    if (is_new) list.push_back({std::string(text), 0});
    ++list[entry->second].count;
}

void RunLog::wrote(const std::string& file)
{
    if (std::find(files_.begin(), files_.end(), file) == files_.end()) files_.push_back(file);
}

}  // namespace velora
