#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace velora::engine {

/// Line breaking classes of plain Latin text (Unicode Standard Annex 14). Other stands for everything that
/// needs the full rules.
enum class BreakClass : uint8_t {
    Letter,
    Digit,
    Infix,
    Hyphen,
    Slash,
    Open,
    Close,
    Paren,
    Exclaim,
    Quote,
    Prefix,
    Postfix,
    Bar,
    Space,
    Other
};

BreakClass break_class(char32_t character);

enum class PairBreak : uint8_t { No, Yes, Unknown };

/// Whether a line may end between two neighbouring characters of plain Latin text.
/// @param before  class of the character before `left`, which matters for hyphens
PairBreak break_between(BreakClass before, BreakClass left, BreakClass right);
/// The same with blanks between the two; `left` is Space at the start of a paragraph.
PairBreak break_after_blanks(BreakClass left, BreakClass right);

/// Break opportunities by the full rules.
class LineBreaker {
public:
    LineBreaker();
    ~LineBreaker();
    LineBreaker(const LineBreaker&) = delete;
    LineBreaker& operator=(const LineBreaker&) = delete;

    /// The text has to live until the last call of `next`.
    void start(std::string_view text);
    /// Offset of the next opportunity; the end of the text is the last one.
    uint32_t next();

private:
    struct Iterator;
    std::unique_ptr<Iterator> iterator_;
};

}  // namespace velora::engine
