#pragma once

#include <string>

namespace velora::engine {

/// A length as page formats write it: at most three decimals, none that says nothing.
void append_short_number(std::string& out, double number);
std::string short_number(double number);

}  // namespace velora::engine
