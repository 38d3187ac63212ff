#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velora {

/// A pattern with the wildcards of printer names: "*" for any characters, "?" for one, "#" for a digit, "[a-f_]" for
/// one of a set, "[!a-f]" for one outside of it. The case of letters does not count, in any script.
class LikePattern {
public:
    /// @throws Fault 93 for a set that is not closed or runs backwards
    explicit LikePattern(std::string_view pattern);

    [[nodiscard]] bool matches(std::string_view text) const;

private:
    enum class Kind : uint8_t { Many, One, Digit, Set };
    struct Range {
        char32_t first, last;
    };
    /// One step of the pattern; a plain character is a set of itself.
    struct Step {
        Kind kind;
        bool outside = false;
        std::vector<Range> ranges = {};

        [[nodiscard]] bool takes(char32_t character) const;
    };

    static void add_set(std::u32string_view inside, std::vector<Step>& steps);

    std::vector<Step> steps_;
};

}  // namespace velora
