#pragma once

#include <span>
#include <string_view>

namespace velora::accounting {

/// The key columns of a view in their order; rows are browsed by them. Empty for a view of one row and for one that is
/// unknown.
std::span<const std::string_view> key_columns(std::string_view view_id);

}  // namespace velora::accounting
