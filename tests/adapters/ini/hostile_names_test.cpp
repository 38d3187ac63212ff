#include <sys/wait.h>
#include <unistd.h>

#include "adapters/ini/stores.h"
#include "adapters/scratch.h"

using namespace velora;
using test::content_of;
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

TEST(IniNames, BrokenFilesAreReadAsFarAsTheyGo)
{
    const Scratch scratch;
    const auto lists = ini_profiles();
    struct Case {
        const char* why;
        std::string content;
    };
    for (const auto& c :
         std::initializer_list<Case>{{"a section that does not close", "[Reports\nNumber=1\n[Good]\nName=x\n"},
                                     {"lines without a sign", "one\ntwo\n[Good]\nName=x\n"},
                                     {"no line feed at the end", "[Good]\nName=x"},
                                     {"carriage returns", "[Good]\r\nName=x\r\n"},
                                     {"a section twice", "[Good]\nOther=1\n[B]\n[Good]\nName=x\n"},
                                     {"blanks everywhere", "  [Good]  \n   Name   =   x   \n"},
                                     {"other bytes", "\xFF\xFE\x01[x]\n[Good]\nName=x\n"},
                                     {"a long line", "[A]\nk=" + std::string(100000, 'v') + "\n[Good]\nName=x\n"}}) {
        const auto path = scratch.write("broken.ini", c.content);
        EXPECT_EQ(lists->read(path, "Good", "Name"), "x") << c.why;
        lists->write(path, "Good", "Added", "y");
        EXPECT_EQ(lists->read(path, "Good", "Name"), "x") << c.why << ", after a change";
        EXPECT_EQ(lists->read(path, "Good", "Added"), "y") << c.why;
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
