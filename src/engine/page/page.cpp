#include "engine/page/page.h"

namespace velora::engine {
bool TextRun::operator==(const TextRun& other) const
{
    return begin == other.begin && end == other.end && *font == *other.font && fore == other.fore &&
           back == other.back && script == other.script && link == other.link;
}

TextDetail& Text::details()
{
    if (!detail) detail = std::make_unique<TextDetail>();
    return *detail;
}

std::string_view Text::shown() const
{
    const std::string_view all = text;
    return detail && detail->truncate_at ? all.substr(0, *detail->truncate_at) : all;
}

}  // namespace velora::engine
