#include "adapters/odbc_text/connection_string.h"

#include <map>
#include <stdexcept>

using namespace velora::odbc;

namespace {

std::string environment(const char* name)
{
    const std::map<std::string, std::string> set{
        {"PLAIN", "secret"}, {"ODD", "a;b}c"}, {"BLANK", " x"}, {"WHOLE", "DSN=a;UID=b"}};
    const auto found = set.find(name);
    return found == set.end() ? "" : found->second;
}

}  // namespace

TEST(ConnectionString, TakesPasswordsFromTheEnvironmentAndNothingElse)
{
    struct Case {
        const char* why;
        const char* written;
        const char* meant;
    };
    for (const auto& c : {
             Case{"nothing to replace", "DSN=velora;PWD=a$b{c}", "DSN=velora;PWD=a$b{c}"},
             Case{"a plain value", "DSN=v;PWD=${PLAIN};X=1", "DSN=v;PWD=secret;X=1"},
             Case{"a value that would end the attribute", "PWD=${ODD};X=1", "PWD={a;b}}c};X=1"},
             Case{"blanks at an end would be lost", "PWD=${BLANK}", "PWD={ x}"},
             Case{"braces that stand there already", "PWD={${ODD}}", "PWD={a;b}}c}"},
             Case{"more than a value is taken as it is", "${WHOLE};PWD=${PLAIN}", "DSN=a;UID=b;PWD=secret"},
         }) {
        EXPECT_EQ(with_environment(c.written, environment), c.meant) << c.why;
    }
}

TEST(ConnectionString, NamesWhatTheEnvironmentLacks)
{
    struct Case {
        const char* written;
        const char* named;
    };
    for (const auto& c :
         {Case{"PWD=${NOBODY}", "NOBODY"}, Case{"PWD=${}", "not set"}, Case{"PWD=${PLAIN", "closing brace"}}) {
        try {
            with_environment(c.written, environment);
            ADD_FAILURE() << c.written;
        } catch (const std::invalid_argument& error) {
            EXPECT_THAT(error.what(), testing::HasSubstr(c.named));
        }
    }
}

TEST(ConnectionString, IsShownWithoutPasswords)
{
    struct Case {
        const char* written;
        const char* shown;
    };
    for (const auto& c : {
             Case{"DSN=v;UID=me;PWD=secret;X=1", "DSN=v;UID=me;PWD=***;X=1"},
             Case{"Password = a b;X=1", "Password =***;X=1"},
             Case{"PWD={a;b};X=1", "PWD=***;X=1"},
             Case{"PWD={a}};b};X=1", "PWD=***;X=1"},
             Case{"X=1;pwd=", "X=1;pwd=***"},
             Case{"odbc:PWD=x", "odbc:PWD=***"},
             Case{"DSN=PWD", "DSN=PWD"},
         }) {
        EXPECT_EQ(without_passwords(c.written), c.shown);
        EXPECT_THAT(without_passwords(c.written), testing::Not(testing::HasSubstr("secret")));
    }
}
