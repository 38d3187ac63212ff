#pragma once

#include <filesystem>
#include <string_view>

namespace velora::sample {

inline constexpr std::string_view kCompanyId = "DEMOCO";
inline constexpr std::string_view kUser = "CHIEF";
/// The day on which the sample company lives: a sale is running, some quotes are about to expire.
inline constexpr std::string_view kToday = "2026-06-15";
/// The quote that shows everything: comments, charges, two taxes, discounts, a ship-to location.
inline constexpr std::string_view kDemoQuote = "Q-10052";

// Both fill a file that has its tables and no rows; the same bytes come out each time.
// They throw std::runtime_error when a row cannot be written.
void fill_accounting_store(const std::filesystem::path& path);
void fill_product_database(const std::filesystem::path& path);

}  // namespace velora::sample
