#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "adapters/sqlite_core/date_collation.h"

namespace velora::sqlite {

/// The statement that answers one of the two server batches about languages; none for any other text.
std::optional<std::string> batch_statement(std::string_view text, int default_language);

/// The order in which the server reads a date under a default language.
DateOrder date_order_of(int language);

}  // namespace velora::sqlite
