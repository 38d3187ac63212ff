#pragma once

#include <string>
#include <string_view>

namespace velora {

/// The text without the blanks at both ends. Only the blank itself counts, as everywhere in the product.
std::string_view trimmed(std::string_view text);

/// Compares two names without regard to the case of ASCII letters.
bool same_name(std::string_view left, std::string_view right);

std::string lower_ascii(std::string_view text);

/// Every occurrence of `what` replaced by `by`; an empty `what` occurs nowhere.
std::string replaced(std::string_view text, std::string_view what, std::string_view by);

/// Hash and equality for maps keyed by names that compare without case.
struct NameHash {
    using is_transparent = void;
    size_t operator()(std::string_view name) const;
};
struct NameEqual {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const { return same_name(left, right); }
};

}  // namespace velora
