#pragma once

namespace velora {

// Of the letters that every notation shares: numbers, markup, dates. Those of languages are the general library's.

constexpr bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

/// A blank between the parts of a notation, line ends included.
constexpr bool is_blank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

constexpr bool is_letter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

constexpr bool is_letter_or_digit(char c)
{
    return is_letter(c) || is_digit(c);
}

}  // namespace velora
