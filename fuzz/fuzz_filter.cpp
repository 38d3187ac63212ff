#include <stdexcept>
#include <string_view>

#include "adapters/accounting_core/filter.h"

/// Any bytes as a filter: refused with a message, or conditions that all have a field of plain characters.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace velora::accounting;
    try {
        for (const auto& condition : read_filter({reinterpret_cast<const char*>(data), size})) {
            const bool is_plain = condition.field.find_first_of("'\";` ()") == std::string::npos;
            if (condition.field.empty() || !is_plain || sql_operator(condition.comparison).empty()) __builtin_trap();
        }
    } catch (const std::invalid_argument&) {
    }
    return 0;
}
