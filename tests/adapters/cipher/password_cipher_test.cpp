#include "adapters/cipher/password_cipher.h"

#include "adapters/scratch.h"

using namespace velora;
using test::content_of;
using test::fault_of;
using test::Scratch;
namespace fs = std::filesystem;

TEST(PasswordCipher, TextComesBackAndIsNeverSeenInBetween)
{
    const Scratch scratch;
    for (const std::string text :
         {"secret", "x", "naïve €漢字", "semi;colon \"quoted\" 'single'", " blanks ", "line\r\nend"}) {
        const auto scrambled = key_file_cipher(scratch.path("v.key"))->scramble(text);
        EXPECT_EQ(key_file_cipher(scratch.path("v.key"))->unscramble(scrambled), text);
        EXPECT_EQ(scrambled.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/="),
                  std::string::npos)
            << "fits a line of an ini file";
        EXPECT_NE(key_file_cipher(scratch.path("v.key"))->scramble(text), scrambled) << "no two results are alike";
    }
}

TEST(PasswordCipher, TheKeyFileIsMadeForItsOwnerOnFirstUse)
{
    const Scratch scratch;
    const auto path = scratch.path("new folder/velora.key");
    const auto cipher = key_file_cipher(path);
    EXPECT_EQ(cipher->scramble(""), "");
    EXPECT_EQ(cipher->unscramble(""), "");
    EXPECT_EQ(cipher->unscramble("AQIDBAUGBwgJCgsMDQ4PEBESExQVFhcYGRobHB0eHyAhIiMkJSYnKCkqKywtLi8w"), "");
    EXPECT_FALSE(fs::exists(path)) << "reading makes no key";
    (void)cipher->scramble("secret");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(std::distance(fs::directory_iterator(scratch.path("new folder")), {}), 1);
}

TEST(PasswordCipher, ForeignOrAlteredTextIsTheEmptyText)
{
    const Scratch scratch;
    const auto cipher = key_file_cipher(scratch.path("v.key"));
    const auto scrambled = cipher->scramble("secret");
    for (const std::string text : {"secret", "AAAA", "====", "not base64!", "\xff\xfe"})
        EXPECT_EQ(cipher->unscramble(text), "");
    for (size_t at = 0; at < scrambled.size(); ++at) {
        auto altered = scrambled;
        altered[at] = altered[at] == 'A' ? 'B' : 'A';
        EXPECT_EQ(cipher->unscramble(altered), "") << "character " << at;
        EXPECT_EQ(cipher->unscramble(scrambled.substr(0, at)), "") << "cut at " << at;
    }
    const auto other = key_file_cipher(scratch.path("other.key"));
    (void)other->scramble("x");
    EXPECT_EQ(other->unscramble(scrambled), "") << "written under another key";
}

TEST(PasswordCipher, AnUnsafeOrBrokenKeyFileIsRefused)
{
    struct Case {
        const char* why;
        std::string content;
        fs::perms permissions;
        const char* reason;
    };
    const Scratch scratch;
    const auto path = scratch.path("v.key");
    const auto own = fs::perms::owner_read | fs::perms::owner_write;
    const auto cipher = key_file_cipher(path);
    const auto scrambled = cipher->scramble("secret");
    const auto key = content_of(path);
    for (const auto& c : {Case{"the group can read it", key, own | fs::perms::group_read, "others can read it"},
                          Case{"everyone can read it", key, own | fs::perms::others_read, "others can read it"},
                          Case{"too short", "short", own, "does not hold a key"},
                          Case{"too long", key + "x", own, "does not hold a key"}}) {
        scratch.write("v.key", c.content);
        fs::permissions(path, c.permissions);
        for (const auto& fault : {fault_of([&] { (void)cipher->scramble("secret"); }),
                                  fault_of([&] { (void)cipher->unscramble(scrambled); })}) {
            EXPECT_EQ(fault.number(), fault::kPathAccess) << c.why;
            EXPECT_THAT(fault.description(), testing::AllOf(testing::HasSubstr(path), testing::HasSubstr(c.reason)))
                << c.why;
        }
    }
    scratch.write("v.key", key);
    fs::permissions(path, own);
    EXPECT_EQ(cipher->unscramble(scrambled), "secret");
}
