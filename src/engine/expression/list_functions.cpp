#include <algorithm>
#include <array>

#include "engine/expression/functions.h"
#include "engine/expression/utf16.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

using enum ValueClass;

const std::vector<Cell>& parts(const Call& call, size_t at = 0)
{
    return **call.cell(at).get_if<Cell::List>();
}

Cell listed(Call& call, ValueClass value_class)
{
    if (value_class == Map && call.arguments.size() % 2 == 1) return {};
    return cell::list({call.arguments.begin(), call.arguments.end()}, value_class);
}

Cell at_index(Call& call)
{
    const int64_t at = call.integer(1);
    return at < 0 || at >= static_cast<int64_t>(parts(call).size()) ? Cell{} : parts(call)[static_cast<size_t>(at)];
}

/// Position of an equal part in a list, or none.
std::optional<size_t> found(Call& call)
{
    const auto& all = parts(call);
    const auto equal = std::ranges::find_if(all, [&](const Cell& one) { return same(one, call.cell(1)); });
    return equal == all.end() ? std::nullopt : std::optional(static_cast<size_t>(equal - all.begin()));
}

/// The value behind a key, or nothing.
const Cell* value_of_key(Call& call)
{
    const auto& all = parts(call);
    for (size_t at = 0; at + 1 < all.size(); at += 2) {
        if (same(all[at], call.cell(1))) return &all[at + 1];
    }
    return nullptr;
}

Cell by_key(Call& call)
{
    const Cell* value = value_of_key(call);
    return value != nullptr ? *value : call.arguments.size() > 2 ? call.cell(2) : Cell{};
}

Cell joined(Call& call)
{
    std::string out;
    for (size_t at = 0; at < parts(call, 1).size(); ++at) {
        if (at > 0) out += call.text(0);
        cell::append_text(parts(call, 1)[at], out);
    }
    return cell::text(std::move(out));
}

Cell characters(Call& call)
{
    std::vector<Cell> out;
    const auto length = static_cast<int64_t>(utf16_size(call.text(0)));
    for (int64_t at = 0; at < length; ++at) {
        out.push_back(cell::integer(utf16_unit(call.text(0), at).value_or(0), Character));
    }
    return cell::list(std::move(out));
}

Cell count(Call& call, size_t each)
{
    return cell::integer(static_cast<int64_t>(parts(call).size() / each));
}

// clang-format off
constexpr auto kFunctions = std::to_array<Function>({
    {"array",       "",              "*",  List, [](Call& c) { return listed(c, List); }},
    {"Arrays",      "asList",        "*",  List, [](Call& c) { return listed(c, List); }},
    {"List",        "of",            "*",  List, [](Call& c) { return listed(c, List); }},
    {"Set",         "of",            "*",  List, [](Call& c) { return listed(c, List); }},
    {"Collections", "singletonList", "o",  List, [](Call& c) { return listed(c, List); }},
    {"Collections", "emptyList",     "",   List, [](Call& c) { return listed(c, List); }},
    {"Collections", "singletonMap",  "oo", Map,  [](Call& c) { return listed(c, Map); }},
    {"Collections", "emptyMap",      "",   Map,  [](Call& c) { return listed(c, Map); }},
    {"Map",         "of",            "*",  Map,  [](Call& c) { return listed(c, Map); }},
    {"new",         "ArrayList",     "",   List, [](Call& c) { return listed(c, List); }},
    {"new",         "ArrayList",     "L",  List, [](Call& c) { return c.cell(0); }},
    {"new",         "HashSet",       "L",  List, [](Call& c) { return c.cell(0); }},
    {"new",         "HashMap",       "",   Map,  [](Call& c) { return listed(c, Map); }},

    {".", "get",          "Li",  Object,  at_index},
    {".", "[]",           "Li",  Object,  at_index},
    {".", "[].length",    "L",   Integer, [](Call& c) { return count(c, 1); }},
    {".", "size",         "L",   Integer, [](Call& c) { return count(c, 1); }},
    {".", "isEmpty",      "L",   Boolean, [](Call& c) { return cell::boolean(parts(c).empty()); }},
    {".", "contains",     "Lo",  Boolean, [](Call& c) { return cell::boolean(found(c).has_value()); }},
    {".", "indexOf",      "Lo",  Integer, [](Call& c) { const auto at = found(c); return cell::integer(at ? static_cast<int64_t>(*at) : -1); }},
    {".", "get",          "Mo",  Object,  by_key},
    {".", "getOrDefault", "Moo", Object,  by_key},
    {".", "containsKey",  "Mo",  Boolean, [](Call& c) { return cell::boolean(value_of_key(c) != nullptr); }},
    {".", "size",         "M",   Integer, [](Call& c) { return count(c, 2); }},
    {".", "isEmpty",      "M",   Boolean, [](Call& c) { return cell::boolean(parts(c).empty()); }},
    {".", "toCharArray",  "t",   List,    characters},
    {"String", "join",    "tL",  Text,    joined},
});
// clang-format on

}  // namespace

std::span<const Function> list_functions()
{
    return kFunctions;
}

}  // namespace velora::engine
