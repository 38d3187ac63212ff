#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "engine/expression/cell.h"

namespace velora::engine {

enum class TokenKind : uint8_t { End, Literal, Name, Reference, Mark };

struct Token {
    TokenKind kind = TokenKind::End;
    size_t offset = 0;
    std::string_view text;  ///< the name, the mark, or what stands between the braces of a reference
    char reference = 0;     ///< F, V, P or R
    Cell literal;
};

/// What is wrong with an expression and at which byte of its text.
class SyntaxError : public std::runtime_error {
public:
    SyntaxError(size_t offset, const std::string& reason) : std::runtime_error(reason), offset_(offset) {}
    [[nodiscard]] size_t offset() const { return offset_; }

private:
    size_t offset_;
};

/// Splits an expression; the last token is `End`. The tokens point into `text`. @throws SyntaxError
std::vector<Token> tokens_of(std::string_view text);

}  // namespace velora::engine
