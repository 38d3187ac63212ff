#include <sstream>

#include "adapters/scratch.h"
#include "adapters/terminal/progress_bar.h"
#include "adapters/terminal/terminal_user_interface.h"

using namespace velora;
using test::content_of;
using test::fault_of;
using test::Scratch;

TEST(TerminalUserInterface, BoxesAreWrittenAsTextAndAsJsonLines)
{
    struct Case {
        MessageBox box;
        const char* text;
        const char* json;
    };
    for (
        const auto& c : {
            Case{
                {"Reporting Error", "13: Type mismatch\r\n\nIn Procedure: x.", Icon::Exclamation},
                "Reporting Error\n13: Type mismatch\n\nIn Procedure: x.\n",
                R"({"title":"Reporting Error","text":"13: Type mismatch\r\n\nIn Procedure: x.","icon":"exclamation"})"},
            Case{{"", "a \"quoted\" \\ é\ttab", Icon::Information},
                 "\na \"quoted\" \\ é\ttab\n",
                 R"({"title":"","text":"a \"quoted\" \\ é\ttab","icon":"information"})"},
            Case{{"T", "\x1b[31mred \xff", Icon::Critical},
                 "T\n?[31mred \xff\n",
                 "{\"title\":\"T\",\"text\":\"\\u001b[31mred \xEF\xBF\xBD\",\"icon\":\"critical\"}"},
        }) {
        const Scratch scratch;
        std::ostringstream out;
        TerminalUserInterface user(out, scratch.path("messages.json"));
        user.show(c.box);
        EXPECT_EQ(out.str(), c.text);
        EXPECT_EQ(content_of(scratch.path("messages.json")), std::string(c.json) + "\n");
    }
}

TEST(TerminalUserInterface, ABoxThatComesAgainIsCountedAndTheFileBeginsAnew)
{
    const Scratch scratch;
    const auto path = scratch.write("messages.json", "of an earlier run\n");
    std::ostringstream out;
    TerminalUserInterface user(out, path);
    EXPECT_EQ(content_of(path), "");
    for (const char* text : {"Text", "Other\r\nlines", "Text", "Last", "Other\r\nlines", "Text"}) {
        user.show({"Title", text, Icon::Information});
    }
    EXPECT_EQ(out.str(), "Title\nText\nTitle\nOther\nlines\nTitle\nLast\n") << "each one once";
    out.str("");
    user.tell_repeats();
    EXPECT_EQ(out.str(), "Shown 3 times: Title, Text\nShown 2 times: Title, Other\n");
    const auto lines = content_of(path);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 6) << "the file takes every one";
}

TEST(TerminalUserInterface, WhatATerminalCannotDoIsAFault)
{
    const Scratch scratch;
    std::ostringstream out;
    const auto path = scratch.path("no folder/messages.json");
    const auto fault = fault_of([&] { TerminalUserInterface(out, path); });
    EXPECT_EQ(fault.number(), fault::kPathAccess);
    EXPECT_THAT(fault.description(), testing::HasSubstr(path));
    TerminalUserInterface user(out);
    EXPECT_EQ(fault_of([&] { user.show_pages(nullptr, "Quote 1"); }).number(), fault::kCannotCreate);
}

TEST(ProgressBar, OnlyATerminalSeesItAndOnlyChanges)
{
    std::ostringstream terminal;
    std::ostringstream file;
    {
        ProgressBar bar(terminal, true, "Rows");
        ProgressBar silent(file, false, "Rows");
        for (size_t row = 0; row <= 100000; ++row) {
            bar.show(row, 100000);
            silent.show(row, 100000);
        }
        bar.show(5, 0);
    }
    EXPECT_EQ(file.str(), "");
    const auto text = terminal.str();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\r'), 102)
        << "0 to 100 percent, and the line is cleared at the end";
    EXPECT_THAT(text, testing::HasSubstr("Rows [###############               ] 50%"));
    EXPECT_THAT(text, testing::EndsWith("100%\r\x1b[K"));
    terminal.str("");
    {
        ProgressBar bar(terminal, true, "Rows");
        bar.count(4096);
        bar.clear();
        bar.clear();
        bar.show(1, 2);
    }
    EXPECT_EQ(terminal.str(),
              "\r\x1b[KRows 4096 rows\r\x1b[K\r\x1b[KRows [###############               ] 50%\r\x1b[K");
}
