#include <string_view>

#include "engine/definition/checks.h"
#include "engine/definition/reader.h"

/// Any bytes as a definition and as a style template: read, or refused with a message.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace velora::engine;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::vector<Warning> warnings;
    try {
        read_definition(text, warnings);
    } catch (const DefinitionError&) {
    }
    try {
        check_styles(read_template(text, warnings), warnings);
    } catch (const DefinitionError&) {
    }
    return 0;
}
