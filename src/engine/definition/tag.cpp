#include "engine/definition/tag.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "engine/page/color_text.h"
#include "values/text.h"

namespace velora::engine {

namespace {

bool is_upper(char c)
{
    return c >= 'A' && c <= 'Z';
}

std::string_view without_blanks(std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\r\n";
    const auto from = text.find_first_not_of(kBlanks);
    if (from == std::string_view::npos) return text.substr(text.size());
    return text.substr(from, text.find_last_not_of(kBlanks) - from + 1);
}

std::optional<double> read_number(std::string_view text)
{
    text = without_blanks(text);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool too_large = error == std::errc::result_out_of_range;
    if ((error != std::errc{} && !too_large) || end != text.data() + text.size()) return std::nullopt;
    if (too_large) return text.starts_with('-') ? -1e300 : 1e300;
    if (std::isnan(value)) return std::nullopt;
    return value;
}

}  // namespace

void Attribute::warn(std::string_view what) const
{
    tag_.warn(tag_.place(attribute_.name()),
              "'" + std::string(attribute_.name()) + "' is \"" + attribute_.value() + "\": " + std::string(what));
}

void Attribute::warn_unknown() const
{
    warn("this value is not known");
}

std::optional<int> Attribute::whole(int least, int most) const
{
    const auto value = read_number(text());
    if (!value) {
        warn("this is no number");
        return std::nullopt;
    }
    if (*value < least || *value > most) {
        const int nearer = *value < least ? least : most;
        warn("out of range, " + std::to_string(nearer) + " is taken");
        return nearer;
    }
    return static_cast<int>(std::lround(*value));
}

std::optional<float> Attribute::number(float least, float most) const
{
    const auto value = read_number(text());
    if (!value) {
        warn("this is no number");
        return std::nullopt;
    }
    const auto inside = std::clamp(*value, static_cast<double>(least), static_cast<double>(most));
    if (inside != *value) warn("out of range, the nearest possible value is taken");
    return static_cast<float>(inside);
}

std::optional<bool> Attribute::flag() const
{
    const auto written = without_blanks(text());
    if (same_name(written, "true")) return true;
    if (same_name(written, "false")) return false;
    warn("this is neither true nor false");
    return std::nullopt;
}

std::optional<Color> Attribute::color() const
{
    const auto color = color_from_text(text());
    if (!color) warn("this is no colour");
    return color;
}

std::string_view Tag::name() const
{
    const std::string_view written = node_.name();
    const auto colon = written.find(':');
    return colon == std::string_view::npos ? written : written.substr(colon + 1);
}

Position Tag::place() const
{
    auto place = source_.place(node_.name());
    if (place.column > 1) --place.column;  // the name stands behind the bracket
    return place;
}

void Tag::fail(std::string reason) const
{
    throw DefinitionError(place(), std::string(name()), std::move(reason));
}

std::string_view Tag::value(std::string_view attribute)
{
    size_t at = 0;
    for (const auto each : node_.attributes()) {
        if (known_name(each.name()) == attribute) {
            take(at);
            return each.value();
        }
        ++at;
    }
    return {};
}

std::string Tag::required(std::string_view attribute)
{
    const auto found = value(attribute);
    if (found.empty()) fail("the attribute '" + std::string(attribute) + "' is missing");
    return std::string(found);
}

std::string Tag::text() const
{
    std::string out;
    for (const auto child : node_.children()) {
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) out += child.value();
    }
    return out;
}

model::ExpressionText Tag::expression() const
{
    const std::string whole = text();
    const auto trimmed_front = without_blanks(whole);
    Position place;
    for (const auto child : node_.children()) {
        if (child.type() != pugi::node_pcdata && child.type() != pugi::node_cdata) continue;
        const std::string_view part = child.value();
        const auto from = part.find_first_not_of(" \t\r\n");
        if (from == std::string_view::npos) continue;
        place = source_.place(part.data() + from);
        break;
    }
    return {std::string(trimmed_front), place};
}

/// "isBold" and "bold" are one attribute in two generations.
std::string Tag::known_name(std::string_view written)
{
    if (written.size() > 2 && written.starts_with("is") && is_upper(written[2])) {
        std::string name(written.substr(2));
        name.front() = static_cast<char>(name.front() + ('a' - 'A'));
        return name;
    }
    return std::string(written);
}

void Tag::take(size_t attribute)
{
    constexpr size_t kMost = 64;
    if (attribute >= kMost) fail("it has more than 64 attributes");
    taken_ |= uint64_t{1} << attribute;
}

void Tag::finish() const
{
    if (ignores_all_) return;
    size_t at = 0;
    for (const auto attribute : node_.attributes()) {
        const std::string_view written = attribute.name();
        const bool taken = at < 64 && (taken_ >> at & 1) != 0;
        ++at;
        const bool bookkeeping = written == "uuid" || written.starts_with("xmlns") || written.starts_with("xsi:");
        if (taken || bookkeeping) continue;
        warn(source_.place(attribute.name()),
             "the attribute '" + std::string(written) + "' is not known and passed over");
    }
}

}  // namespace velora::engine
