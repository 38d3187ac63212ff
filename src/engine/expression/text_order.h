#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace velora::engine {

/// The order in which readers of a locale expect texts: by letters first, then by accents, then by case. Blanks and
/// hyphens count only where nothing but accents and case differs, as where definitions are drawn.
class TextOrder {
public:
    /// @param locale  as ICU reads it
    explicit TextOrder(const std::string& locale);
    ~TextOrder();
    TextOrder(const TextOrder&) = delete;
    TextOrder& operator=(const TextOrder&) = delete;

    /// Bytes whose order is that of the texts.
    [[nodiscard]] std::string key(std::string_view text) const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace velora::engine
