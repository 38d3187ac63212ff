#pragma once

#include <filesystem>
#include <span>
#include <string_view>

#include "adapters/store_schema/tables.h"

namespace velora {

namespace sample {
inline constexpr std::string_view kCompanyId = "DEMOCO";
inline constexpr std::string_view kUser = "CHIEF";
inline constexpr std::string_view kTaxRegistration = "GST/HST 10512 3344 RT0001";
/// The quote that shows everything: comments, charges, two taxes, discounts, a ship-to location.
inline constexpr std::string_view kDemoQuote = "Q-10052";
}  // namespace sample

/// Fills the tables of a store with the rows of the files "TABLE.csv" of a folder; a table without a file stays empty.
/// The first line names the columns, and a column that it leaves out takes its default. An empty cell is an empty text,
/// of a number or a date null; NULL is null in every column. The same files give the same bytes.
/// @throws HostError naming file and line of what is no row of the table, and a file that is of no table
void fill_from_csv(const std::filesystem::path& store, std::span<const stores::SchemaTable> tables,
                   const std::filesystem::path& folder);

}  // namespace velora
