#include "values/json_nesting.h"

namespace velora {

bool nests_too_deep(std::string_view json)
{
    size_t depth = 0;
    bool in_text = false;
    for (size_t at = 0; at < json.size(); ++at) {
        const char c = json[at];
        if (c == '"') in_text = !in_text;
        if (in_text) {
            if (c == '\\') ++at;
            continue;
        }
        if ((c == '[' || c == '{') && ++depth > kDeepestJson) return true;
        if ((c == ']' || c == '}') && depth > 0) --depth;
    }
    return false;
}

}  // namespace velora
