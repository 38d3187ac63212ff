#include <string_view>

#include "engine/fill/rows/nested_rows.h"

/// Any bytes as rows in one cell: none, or rows that all have every field.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const auto rows = velora::engine::nested_rows({reinterpret_cast<const char*>(data), size});
    while (rows && rows->next()) {
        for (size_t field = 0; field < rows->fields().size(); ++field) static_cast<void>(rows->cell(field));
    }
    return 0;
}
