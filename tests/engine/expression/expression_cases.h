#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "expression_world.h"
#include "values/value.h"

namespace velora::engine::testing {

struct Case {
    const char* why;
    const char* text;
    Value expected;
};

inline std::string described(const Value& value)
{
    return value.is_null() ? "null" : to_text(value) + " of type " + std::to_string(static_cast<int>(value.type()));
}

/// Every expression compiles and gives the value that is expected of it.
inline void check(std::initializer_list<Case> cases)
{
    const World world;
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.why) + ": " + c.text);
        try {
            const Value result = compile(c.text, world).evaluate(world);
            EXPECT_TRUE(result == c.expected) << described(result) << " instead of " << described(c.expected);
        } catch (const DefinitionError& error) {
            ADD_FAILURE() << error.what();
        }
    }
}

}  // namespace velora::engine::testing
