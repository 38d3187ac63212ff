#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace velora::engine {

/// What a character is to the end of a line. Other stands for scripts whose words only a dictionary can tell apart.
enum class BreakClass : uint8_t {
    Letter,
    Digit,
    Point,     ///< within a number: . ,
    Close,     ///< stays with what is before it
    Quote,     ///< opens or closes
    Open,      ///< stays with what follows; most currency signs too
    Currency,  ///< $ and ' stay with both sides
    Hyphen,
    Blank,
    Ideograph,
    Glue,  ///< no-break blanks and hyphens
    Mark,  ///< combining marks
    Feed,
    Other
};

/// The character that begins `text` at `at`; "()" is one sign that closes.
BreakClass break_class(std::string_view text, uint32_t at, char32_t character);

/// Tells character by character where a line may end, as designers' tools break texts: after a sign that closes and
/// before one that opens, also without a blank; after a hyphen; not within a number, and not after a slash.
class BreakRules {
public:
    /// Whether a line may end before the character. Not for Other.
    bool before(BreakClass kind);

private:
    char state_ = 'f';
};

/// Break opportunities of a paragraph in any script.
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
    struct Dictionary;

    void start_dictionary(std::string_view text);
    uint32_t next_of_dictionary();

    std::string_view text_;
    uint32_t at_ = 0;
    BreakRules rules_;
    bool plain_ = true;
    std::unique_ptr<Dictionary> dictionary_;
};

}  // namespace velora::engine
