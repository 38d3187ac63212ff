#include "forms/paths.h"

#include "values/fault.h"
#include "values/text.h"
#include "values/utf8.h"

namespace velora::forms {

std::vector<std::string> path_pieces(std::string_view path)
{
    std::vector<std::string> pieces;
    for (size_t from = 0;;) {
        const size_t end = path.find_first_of("/\\", from);
        pieces.emplace_back(path.substr(from, end == std::string_view::npos ? end : end - from));
        if (end == std::string_view::npos) return pieces;
        from = end + 1;
    }
}

std::string name_from_path(std::string_view path)
{
    // It is meant: the name of a path that was typed hangs on the folders above it.
    constexpr size_t kPlacesBefore = 4;
    const auto pieces = path_pieces(path);
    if (pieces.size() <= kPlacesBefore) throw fault::subscript(std::string(path));
    const std::string& measure = pieces[pieces.size() - 1 - kPlacesBefore];
    return std::string(trimmed(cut_to_characters(pieces.back(), character_count(measure))));
}

std::string title_of_file(std::string_view path)
{
    constexpr size_t kExtension = 4;
    const std::string file = path_pieces(path).back();
    const size_t length = character_count(file);
    if (length < kExtension) throw fault::of(fault::kInvalidCall, file);
    return std::string(trimmed(cut_to_characters(file, length - kExtension)));
}

}  // namespace velora::forms
