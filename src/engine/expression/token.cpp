#include "engine/expression/token.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "engine/expression/utf16.h"
#include "values/characters.h"
#include "values/hex.h"
#include "values/utf8.h"

namespace velora::engine {

namespace {

bool starts_name(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

constexpr auto kMarks = std::to_array<std::string_view>(
    {">>>", "&&", "||", "==", "!=", "<=", ">=", "<<", ">>", "+", "-", "*", "/", "%", "!", "<",
     ">",   "?",  ":",  "(",  ")",  ",",  ".",  "[",  "]",  "{", "}", "&", "|", "^", "~"});

class Splitter {
public:
    explicit Splitter(std::string_view text) : text_(text) {}

    std::vector<Token> run()
    {
        std::vector<Token> tokens;
        do {
            pass_blanks();
            after_minus_ = !tokens.empty() && tokens.back().kind == TokenKind::Mark && tokens.back().text == "-";
            tokens.push_back(next());
        } while (tokens.back().kind != TokenKind::End);
        return tokens;
    }

private:
    [[nodiscard]] char peek(size_t ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0'; }

    void pass_blanks()
    {
        while (at_ < text_.size()) {
            const auto rest = text_.substr(at_);
            if (std::string_view(" \t\r\n\f").find(rest.front()) != std::string_view::npos) {
                ++at_;
            } else if (rest.starts_with("//")) {
                at_ = std::min(text_.find('\n', at_), text_.size());
            } else if (rest.starts_with("/*")) {
                const auto end = text_.find("*/", at_ + 2);
                if (end == std::string_view::npos) throw SyntaxError(at_, "the comment has no end");
                at_ = end + 2;
            } else {
                return;
            }
        }
    }

    Token next()
    {
        if (at_ == text_.size()) return {TokenKind::End, at_, {}, 0, {}};
        const char c = peek();
        if (c == '"' || c == '\'') return quoted(c);
        if (c == '$') return reference();
        if (is_digit(c) || (c == '.' && is_digit(peek(1)))) return number();
        if (starts_name(c)) return name();
        return mark();
    }

    Token name()
    {
        const size_t from = at_;
        while (starts_name(peek()) || is_digit(peek())) ++at_;
        return {TokenKind::Name, from, text_.substr(from, at_ - from), 0, {}};
    }

    Token mark()
    {
        const auto rest = text_.substr(at_);
        for (const auto mark : kMarks) {
            if (!rest.starts_with(mark)) continue;
            const size_t from = at_;
            at_ += mark.size();
            return {TokenKind::Mark, from, mark, 0, {}};
        }
        throw SyntaxError(at_, "'" + std::string(whole_character()) + "' is outside the expression language");
    }

    [[nodiscard]] std::string_view whole_character() const
    {
        size_t end = at_ + 1;
        while (end < text_.size() && (static_cast<unsigned char>(text_[end]) & 0xC0) == 0x80) ++end;
        return text_.substr(at_, end - at_);
    }

    Token reference()
    {
        const size_t from = at_;
        const char letter = peek(1);
        if (peek(2) == '!') throw SyntaxError(from, "$" + std::string(1, letter) + "!{} may not be used");
        if (std::string_view("FVPR").find(letter) == std::string_view::npos || letter == '\0' || peek(2) != '{') {
            throw SyntaxError(from, "after $ comes F, V, P or R and a name in braces");
        }
        const auto end = text_.find('}', at_);
        if (end == std::string_view::npos) throw SyntaxError(from, "the closing brace is missing");
        const auto name = text_.substr(at_ + 3, end - at_ - 3);
        at_ = end + 1;
        return {TokenKind::Reference, from, name, letter, {}};
    }

    Token quoted(char quote)
    {
        const size_t from = at_++;
        std::string out;
        while (peek() != quote) {
            if (at_ >= text_.size() || peek() == '\n') throw SyntaxError(from, "the closing quote is missing");
            if (peek() == '\\') {
                escape(out);
            } else {
                out += text_[at_++];
            }
        }
        ++at_;
        if (quote == '\'' && utf16_size(out) == 1) {
            return {
                TokenKind::Literal, from, {}, 0, cell::integer(utf16_unit(out, 0).value_or(0), ValueClass::Character)};
        }
        return {TokenKind::Literal, from, {}, 0, cell::text(std::move(out))};
    }

    void escape(std::string& out)
    {
        constexpr std::string_view kLetters = "nrtbf\"'\\0s";
        constexpr std::string_view kMeanings("\n\r\t\b\f\"'\\\0 ", 10);
        const size_t from = at_++;
        if (peek() == 'u') return unicode_escape(from, out);
        const auto found = kLetters.find(peek());
        if (at_ >= text_.size() || found == std::string_view::npos) throw SyntaxError(from, "unknown escape in a text");
        out += kMeanings[found];
        ++at_;
    }

    /// Reads this escape and those right behind it, of which two may be the halves of one character.
    void unicode_escape(size_t from, std::string& out)
    {
        std::u16string units(1, unicode_unit(from));
        while (peek() == '\\' && peek(1) == 'u') {
            const size_t next = at_++;
            units += unicode_unit(next);
        }
        append_utf16(out, units);
    }

    /// Reads "uXXXX" behind a backslash.
    char16_t unicode_unit(size_t from)
    {
        while (peek() == 'u') ++at_;
        int unit = 0;
        for (int digit = 0; digit < 4; ++digit, ++at_) {
            const int value = hex_value(peek());
            if (value < 0) throw SyntaxError(from, "\\u takes four hexadecimal digits");
            unit = unit * 16 + value;
        }
        return static_cast<char16_t>(unit);
    }

    Token number()
    {
        const size_t from = at_;
        if (peek() == '0' && (peek(1) == 'x' || peek(1) == 'X')) return of_base(16);
        if (peek() == '0' && (peek(1) == 'b' || peek(1) == 'B')) return of_base(2);
        bool whole = true;
        std::string digits;
        const auto take_digits = [&] {
            for (; is_digit(peek()) || (peek() == '_' && is_digit(peek(1))); ++at_) {
                if (peek() != '_') digits += peek();
            }
        };
        take_digits();
        if (peek() == '.' && is_digit(peek(1))) {
            whole = false;
            digits += text_[at_++];
            take_digits();
        } else if (peek() == '.' && !starts_name(peek(1))) {
            whole = false;
            ++at_;
        }
        if ((peek() == 'e' || peek() == 'E') && (is_digit(peek(1)) || is_digit(peek(2)))) {
            whole = false;
            digits += 'e';
            ++at_;
            if (peek() == '-' || peek() == '+') digits += text_[at_++];
            take_digits();
        }
        return {TokenKind::Literal, from, {}, 0, literal(from, digits, whole)};
    }

    Cell literal(size_t from, const std::string& digits, bool whole)
    {
        const char suffix = peek();
        if (std::string_view("dDfFgG").find(suffix) != std::string_view::npos && suffix != '\0') {
            ++at_;
            whole = false;
        }
        if (suffix == 'g' || suffix == 'G') {
            const auto decimal = Decimal::from_text(digits);
            if (!decimal) throw SyntaxError(from, "the number is out of range");
            return cell::decimal(decimal);
        }
        if (whole) return whole_literal(from, digits, digits.size() > 1 && digits.front() == '0' ? 8 : 10);
        const std::string written = digits.front() == '.' ? "0" + digits : digits;
        double value = 0;
        const auto [end, error] = std::from_chars(written.data(), written.data() + written.size(), value);
        if (error != std::errc{}) throw SyntaxError(from, "the number is out of range");
        return cell::number(value, suffix == 'f' || suffix == 'F' ? ValueClass::Float : ValueClass::Double);
    }

    Cell whole_literal(size_t from, const std::string& digits, int base)
    {
        uint64_t value = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
        if (end != digits.data() + digits.size()) throw SyntaxError(from, "a digit is too large for its base");
        const bool is_long = peek() == 'L' || peek() == 'l';
        if (is_long) ++at_;
        const uint64_t least = is_long ? uint64_t{1} << 63 : uint64_t{1} << 31;  // its minus sign stands before it
        const uint64_t bits = is_long ? ~uint64_t{0} : 0xFFFFFFFFU;
        const uint64_t most = base != 10 ? bits : after_minus_ ? least : least - 1;
        if (error != std::errc{} || digits.empty() || value > most) {
            throw SyntaxError(from, is_long ? "the number is out of range"
                                            : "the number is out of the range of an Integer; write L behind it");
        }
        return cell::integer(static_cast<int64_t>(value), is_long ? ValueClass::Long : ValueClass::Integer);
    }

    /// Digits behind 0x or 0b.
    Token of_base(int base)
    {
        const size_t from = at_;
        at_ += 2;
        std::string digits;
        for (; hex_value(peek()) >= 0 || peek() == '_'; ++at_) {
            if (peek() != '_') digits += peek();
        }
        return {TokenKind::Literal, from, {}, 0, whole_literal(from, digits, base)};
    }

    std::string_view text_;
    size_t at_ = 0;
    bool after_minus_ = false;
};

}  // namespace

std::vector<Token> tokens_of(std::string_view text)
{
    return Splitter(text).run();
}

}  // namespace velora::engine
