#include <malloc.h>
#include <sys/stat.h>

#include <thread>

#include "engine/export/export_run.h"
#include "engine/export/made_png.h"
#include "engine/export/sample_pages.h"
#include "engine/export/sample_quote.h"
#include "support/print_xml_reader.h"
#include "support/small_disk.h"
#include "values/fault.h"

namespace velora::engine {
namespace {

namespace fs = std::filesystem;
using test::SmallDisk;

constexpr std::string_view kFormats[] = {"pdf", "html", "xls", "rtf", "doc", "txt", "xml"};

size_t files_in(const fs::path& folder)
{
    return static_cast<size_t>(std::distance(fs::directory_iterator(folder), {}));
}

class ExportFailures : public testing::Test {
protected:
    ExportFailures()
    {
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    ~ExportFailures() override { fs::remove_all(folder); }

    /// What the fault says; empty when everything went well.
    std::string write(std::string_view format, const fs::path& target, int pages, auto&& before_the_end)
    {
        PageList list = sample_quote(pages);
        try {
            const auto sink = make_exporter(format, target, {fonts, {}});
            sink->begin(list.document);
            for (Page& page : list.pages) sink->page(std::move(page));
            before_the_end();
            sink->end();
        } catch (const Fault& fault) {
            EXPECT_EQ(fault.number(), fault::kPathAccess) << format;
            return fault.description();
        }
        return {};
    }
    std::string write(std::string_view format, const fs::path& target, int pages = 1)
    {
        return write(format, target, pages, [] {});
    }

    FontStore fonts{VELORA_SOURCE_DIR "/fonts"};
    const fs::path folder = fs::path(VELORA_TEST_SCRATCH) / "export-failures";
};

TEST_F(ExportFailures, AFullDiskKeepsTheEarlierFileInEveryFormat)
{
    const fs::path target = folder / "kept.out";
    for (const auto format : kFormats) {
        // Full at once, full in the middle, full only when the last buffer is written out.
        const fs::path whole = folder / "whole.out";
        ASSERT_EQ(write(format, whole, 40), "") << format;
        const auto size = fs::file_size(whole);
        fs::remove(whole);
        for (const auto most : {uintmax_t{0}, size / 2, size - 1}) {
            std::ofstream(target) << "earlier";
            std::string said;
            {
                const SmallDisk disk(most);
                said = write(format, target, 40);
            }
            EXPECT_THAT(said, testing::HasSubstr("kept.out")) << format << " with room for " << most;
            EXPECT_THAT(said, testing::HasSubstr("File too large")) << format;
            EXPECT_EQ(bytes_of(target), "earlier") << format;
            EXPECT_EQ(files_in(folder), 1U) << format << " leaves a file behind";
        }
    }
}

TEST_F(ExportFailures, AFolderThatGoesAwayIsToldWithTheFile)
{
    for (const auto format : kFormats) {
        const fs::path inner = folder / "inner";
        fs::create_directory(inner);
        const std::string said = write(format, inner / "gone.out", 2, [&] { fs::remove_all(inner); });
        EXPECT_THAT(said, testing::HasSubstr("gone.out")) << format;
        EXPECT_FALSE(fs::exists(inner)) << format << " makes no folder";
    }
}

TEST_F(ExportFailures, AFolderInThePlaceOfTheFileStaysAFolder)
{
    for (const auto format : kFormats) {
        const fs::path target = folder / "taken";
        fs::create_directories(target / "inside");
        EXPECT_THAT(write(format, target), testing::HasSubstr("taken")) << format;
        EXPECT_TRUE(fs::is_directory(target / "inside")) << format;
        EXPECT_EQ(files_in(folder), 1U) << format << " leaves a file behind";
    }
}

TEST_F(ExportFailures, ANameThatIsTooLongIsTold)
{
    EXPECT_THAT(write("pdf", folder / std::string(300, 'n')), testing::HasSubstr("File name too long"));
    EXPECT_EQ(files_in(folder), 0U);
}

TEST_F(ExportFailures, WhatIsNoFileIsWrittenToAndNeverReplaced)
{
    const fs::path pipe = folder / "pipe";
    for (const auto format : kFormats) {
        ASSERT_EQ(write(format, folder / "beside"), "") << format;
        fs::remove(pipe);
        ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
        std::string read;
        std::thread reader([&] { read = bytes_of(pipe); });
        EXPECT_EQ(write(format, pipe), "") << format;
        reader.join();
        EXPECT_TRUE(fs::is_fifo(pipe)) << format;
        EXPECT_EQ(read, bytes_of(folder / "beside")) << format;
        EXPECT_EQ(files_in(folder), 2U) << format << " leaves a file behind";
    }
}

TEST_F(ExportFailures, AFullDeviceIsToldAndStaysADevice)
{
    const fs::path device = folder / "full";
    fs::create_symlink("/dev/full", device);  // a name of our own: nothing happens to the machine's
    for (const auto format : kFormats) {
        EXPECT_THAT(write(format, device), testing::HasSubstr("No space left on device")) << format;
        EXPECT_TRUE(fs::is_symlink(device)) << format;
        EXPECT_TRUE(fs::is_character_file("/dev/full")) << format;
        EXPECT_EQ(files_in(folder), 1U) << format;
    }
}

TEST_F(ExportFailures, ALinkLeadsToTheFileThatIsWritten)
{
    fs::create_directory(folder / "store");
    std::ofstream(folder / "store" / "real.txt") << "earlier";
    fs::create_symlink("store/real.txt", folder / "link.txt");
    EXPECT_EQ(write("txt", folder / "link.txt"), "");
    EXPECT_TRUE(fs::is_symlink(folder / "link.txt"));
    EXPECT_NE(bytes_of(folder / "store" / "real.txt"), "earlier");
    EXPECT_EQ(files_in(folder / "store"), 1U);
}

TEST_F(ExportFailures, TwoExportsOfOneNameAtOnceGiveOneWholeFile)
{
    const fs::path target = folder / "both.xml";
    PageList lists[2] = {sample_quote(2), sample_quote(5)};
    std::unique_ptr<PageSink> sinks[2];
    for (auto& sink : sinks) sink = make_exporter("xml", target, {fonts, {}});
    for (size_t at = 0; at < 2; ++at) sinks[at]->begin(lists[at].document);
    for (size_t at = 0; at < 2; ++at) {
        for (Page& page : lists[at].pages) sinks[at]->page(std::move(page));
    }
    sinks[1]->end();
    sinks[0]->end();
    PageList read;
    read_print_xml(bytes_of(target), read);
    EXPECT_EQ(read.pages.size(), 2U) << "the one that ended last";
    for (auto& sink : sinks) sink.reset();
    EXPECT_EQ(files_in(folder), 1U);
}

TEST_F(ExportFailures, TheSameInputGivesTheSameBytesInEveryFormat)
{
    for (const auto format : kFormats) {
        std::vector<std::string> made;
        std::vector<std::unique_ptr<std::string>> between;  // so that the second run finds other addresses
        for (int run = 0; run < 2; ++run) {
            ASSERT_EQ(write(format, folder / "same.out", 3), "");
            made.push_back(bytes_of(folder / "same.out"));
            for (int i = 0; i < 100; ++i) between.push_back(std::make_unique<std::string>(100 + 37 * i, 'x'));
        }
        EXPECT_EQ(made[0], made[1]) << format;
    }
}

TEST_F(ExportFailures, ManyPagesGoThroughWithoutBeingHeld)
{
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizer's memory is not the program's";
#endif
    constexpr int kFirst = 500, kMore = 4000;
    constexpr size_t kMostForPage = 150;  // places of objects and the like
    for (const auto format : kFormats) {
        if (format == "xls") continue;  // a workbook's columns are known behind the last page
        SamplePages sample;
        const auto sink = make_exporter(format, folder / "many.out", {fonts, {}});
        sink->begin(sample.document);
        const Style style = sample.style();
        size_t before = 0;
        for (int number = 0; number < kFirst + kMore; ++number) {
            for (int y = 20; y < 800; y += 40) {
                sample.add_text({20, y, 300, 20}, "Page " + std::to_string(number), style);
            }
            sink->page(std::move(sample.page));
            sample.page = {};
            if (number == kFirst) before = mallinfo2().uordblks;
        }
        const size_t after = mallinfo2().uordblks;
        EXPECT_LT(after, before + kMore * kMostForPage) << format;
        sink->end();
        EXPECT_GT(fs::file_size(folder / "many.out"), size_t{kFirst + kMore} * 100) << format;
    }
}

TEST_F(ExportFailures, NoPagesAndEmptyPagesAreFilesAllTheSame)
{
    for (const auto format : kFormats) {
        for (const int pages : {0, 1, 2}) {
            Document document;
            const auto sink = make_exporter(format, folder / "empty.out", {fonts, {}});
            sink->begin(document);
            for (int number = 0; number < pages; ++number) sink->page({});
            sink->end();
            const std::string bytes = bytes_of(folder / "empty.out");
            if (format == "txt") {
                EXPECT_EQ(bytes, std::string(static_cast<size_t>(std::max(pages - 1, 0)), '\f'));
            } else {
                EXPECT_GT(bytes.size(), 100U) << format;
            }
            if (format != "xml") continue;
            PageList read;
            read_print_xml(bytes, read);
            EXPECT_EQ(read.pages.size(), static_cast<size_t>(pages));
        }
    }
}

}  // namespace
}  // namespace velora::engine
