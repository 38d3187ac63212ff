#include <sys/wait.h>
#include <unistd.h>

#include "adapters/ini/stores.h"
#include "adapters/scratch.h"

using namespace velora;
using test::content_of;
using test::fault_of;
using test::Scratch;

namespace {

constexpr const char* kNames[] = {"a]b",          "[a",       "]",       "a=b",  "=",       ";a",   "#a",
                                  "a;b",          " a ",      "\"a\"",   "\xFF", "naïve €", "a\tb", "<<<E",
                                  "../../passwd", "A_Report", "%41",     "100%", "a]%5D",   "a\\b", "%s%n",
                                  "$HOME",        "'",        "a\r\n[b]"};

}  // namespace

/// The names come from users: a company's, a workstation's, a report's.
TEST(IniNames, AHostileSectionComesBackAndTouchesNoOther)
{
    for (const std::string name : kNames) {
        SCOPED_TRACE(name);
        const Scratch scratch;
        const auto path = scratch.path("list.ini");
        const auto lists = ini_profiles();
        lists->write(path, "Reports", "Number", "2");
        lists->write(path, name, "Name", "x");
        lists->write(path, "Reports", "Last", "y");
        EXPECT_EQ(lists->read(path, name, "Name"), "x");
        EXPECT_EQ(lists->read(path, "Reports", "Number"), "2");
        EXPECT_EQ(lists->read(path, "Reports", "Last"), "y");
        lists->delete_section(path, name);
        EXPECT_EQ(lists->read(path, name, "Name"), "");
        EXPECT_EQ(lists->read(path, "Reports", "Number"), "2");
    }
}

TEST(IniNames, AHostileKeyComesBackAndTouchesNoOther)
{
    for (const std::string name : kNames) {
        SCOPED_TRACE(name);
        const Scratch scratch;
        const auto path = scratch.path("list.ini");
        const auto lists = ini_profiles();
        lists->write(path, "Reports", "Number", "2");
        lists->write(path, "Reports", name, "x");
        lists->write(path, "Reports", "Last", "y");
        EXPECT_EQ(lists->read(path, "Reports", name), "x");
        EXPECT_EQ(lists->read(path, "Reports", "Number"), "2");
        EXPECT_EQ(lists->read(path, "Reports", "Last"), "y");
    }
}

TEST(IniNames, OddFilesAreReadAndKeepTheirKeys)
{
    const Scratch scratch;
    const auto lists = ini_profiles();
    struct Case {
        const char* why;
        std::string content;
    };
    for (const auto& c :
         std::initializer_list<Case>{{"no line feed at the end", "[Good]\nName=x"},
                                     {"carriage returns", "[Good]\r\nName=x\r\n"},
                                     {"a section twice", "[Good]\nOther=1\n[B]\n[Good]\nName=x\n"},
                                     {"blanks everywhere", "  [Good]  \n   Name   =   x   \n"},
                                     {"other bytes",
                                      "[Gr\xFC\xDF"
                                      "e]\nA=\xE9\n[Good]\nName=x\n"},
                                     {"a long line", "[A]\nk=" + std::string(100000, 'v') + "\n[Good]\nName=x\n"}}) {
        const auto path = scratch.write("odd.ini", c.content);
        EXPECT_EQ(lists->read(path, "Good", "Name"), "x") << c.why;
        lists->write(path, "Good", "Added", "y");
        EXPECT_EQ(lists->read(path, "Good", "Name"), "x") << c.why << ", after a change";
        EXPECT_EQ(lists->read(path, "Good", "Added"), "y") << c.why;
    }
}

TEST(IniNames, WhatIsNotUnderstoodIsReadAsFarAsItGoesAndNeverRewritten)
{
    const Scratch scratch;
    const auto lists = ini_profiles();
    struct Case {
        const char* why;
        std::string content;
        const char* line;
    };
    for (const auto& c : std::initializer_list<Case>{
             {"a section that does not close", "; a list\n[Reports\nNumber=1\n[Good]\nName=x\n", "line 2 "},
             {"lines without a sign", "[Good]\r\nName=x\r\n\r\none\r\n", "line 4 "},
             {"keys before the first section", "Name=y\n[Good]\nName=x\n", "line 1 "},
             {"a section without a name", "[Good]\nName=x\n[ ]\nOther=z\n", "line 3 "},
             {"words behind a section", "[Good] of mine\nName=x\n", "line 1 "},
             {"a value without a key", "[Good]\nName=x\n =z\n", "line 3 "},
         }) {
        const auto path = scratch.write("broken.ini", c.content);
        EXPECT_EQ(lists->read(path, "Good", "Name"), "x") << c.why;
        for (const auto& fault : {fault_of([&] { lists->write(path, "Good", "Added", "y"); }),
                                  fault_of([&] { lists->delete_section(path, "Good"); })}) {
            EXPECT_EQ(fault.number(), fault::kPathAccess) << c.why;
            EXPECT_THAT(fault.description(), testing::AllOf(testing::HasSubstr(path), testing::HasSubstr(c.line)));
        }
        EXPECT_EQ(content_of(path), c.content) << c.why;
    }
}

TEST(IniNames, FilesThatHoldNoTextAreNeitherReadNorWritten)
{
    const Scratch scratch;
    const auto lists = ini_profiles();
    const std::string utf16_without_mark("[\0A\0]\0", 6), half_a_unit("\xFF\xFE[\0A\0]\0\n", 9),
        half_a_pair("\xFF\xFE\x3D\xD8[\0", 6);
    std::string long_file = "[A]\nk=";
    long_file.append(5u << 20, 'v');
    for (const std::string& content : {utf16_without_mark, half_a_unit, half_a_pair, long_file}) {
        const auto path = scratch.write("list.ini", content);
        EXPECT_EQ(fault_of([&] { (void)lists->read(path, "A", "k"); }).number(), fault::kPathAccess);
        EXPECT_THAT(fault_of([&] { lists->write(path, "A", "k", "v"); }).description(), testing::HasSubstr(path));
        EXPECT_EQ(content_of(path), content);
    }
    std::filesystem::create_symlink("/dev/zero", scratch.path("endless.ini"));
    EXPECT_THAT(fault_of([&] { (void)lists->read(scratch.path("endless.ini"), "A", "k"); }).description(),
                testing::HasSubstr("no ordinary file"));
    EXPECT_EQ(fault_of([&] { lists->write(scratch.path("endless.ini"), "A", "k", "v"); }).number(), fault::kPathAccess);
}

/// As editors of several systems save a text.
TEST(IniNames, AFileKeepsItsEncodingAndItsLineEnds)
{
    const Scratch scratch;
    const auto lists = ini_profiles();
    struct Case {
        const char* why;
        std::string before, after;
    };
    const auto wide = [](std::string_view text, bool big) {
        std::string out = big ? "\xFE\xFF" : "\xFF\xFE";
        for (const char c : text) big ? out.append({'\0', c}) : out.append({c, '\0'});
        return out;
    };
    const std::string smile_little("\x3D\xD8\x00\xDE", 4), smile_big("\xD8\x3D\xDE\x00", 4);
    for (const auto& c : {
             Case{"UTF-8 with its mark", "\xEF\xBB\xBF[A]\nk=\xC3\xA9\n",
                  "\xEF\xBB\xBF[A]\nk=\xC3\xA9\nn=\xF0\x9F\x98\x80\n"},
             Case{"UTF-16, low byte first", wide("[A]\r\nk=\xE9\r\n", false),
                  wide("[A]\r\nk=\xE9\r\nn=", false) + smile_little + wide("\r\n", false).substr(2)},
             Case{"UTF-16, high byte first", wide("[A]\nk=\xE9\n", true),
                  wide("[A]\nk=\xE9\nn=", true) + smile_big + wide("\n", true).substr(2)},
             Case{"pairs at the ends of lines", "[A]\r\nk=\xC3\xA9\r\n", "[A]\r\nk=\xC3\xA9\r\nn=\xF0\x9F\x98\x80\r\n"},
         }) {
        const auto path = scratch.write("list.ini", c.before);
        EXPECT_EQ(lists->read(path, "A", "k"), "\xC3\xA9") << c.why;
        lists->write(path, "A", "n", "\xF0\x9F\x98\x80");
        EXPECT_EQ(lists->read(path, "A", "n"), "\xF0\x9F\x98\x80") << c.why;
        EXPECT_EQ(content_of(path), c.after) << c.why;
    }
}

TEST(IniNames, ProcessesThatWriteAtTheSameTimeLoseNothing)
{
    constexpr int kKeys = 25;
    const Scratch scratch;
    const auto path = scratch.path("shared.ini");
    const auto write = [&](const std::string& section) {
        for (int key = 0; key < kKeys; ++key) ini_profiles()->write(path, section, std::to_string(key), "v");
    };
    const pid_t child = fork();
    if (child == 0) {
        try {
            write("Child");
        } catch (...) {
            _exit(1);
        }
        _exit(0);
    }
    write("Parent");
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    for (int key = 0; key < kKeys; ++key) {
        EXPECT_EQ(ini_profiles()->read(path, "Child", std::to_string(key)), "v") << key;
        EXPECT_EQ(ini_profiles()->read(path, "Parent", std::to_string(key)), "v") << key;
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(std::filesystem::path(path).parent_path()), {}), 1)
        << "no part of a file stays";
}
