#include "engine/export/export_run.h"
#include "engine/export/sample_quote.h"

namespace velora::engine {
namespace {

// scripts/check-exports opens these files with other programs.
TEST(Formats, EachIsWrittenByItsNameAndIsWhatItSays)
{
    struct Case {
        std::string_view format;
        const char *name, *start;
    };
    for (const auto& c : {Case{"pdf", "sample.pdf", "%PDF-1."}, Case{"html", "sample.html", "<!DOCTYPE html>"},
                          Case{"xls", "sample.xls", "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"},
                          Case{"rtf", "sample.rtf", "{\\rtf1"}, Case{"doc", "sample.doc", "{\\rtf1"},
                          Case{"xml", "sample.xml", "<?xml"}, Case{"xlsx", "sample.xlsx", "PK\x03\x04"},
                          Case{"docx", "sample.docx", "PK\x03\x04"}, Case{"csv", "sample.csv", ""}}) {
        std::filesystem::create_directories(VELORA_TEST_SCRATCH);
        const auto path = std::filesystem::path(VELORA_TEST_SCRATCH) / c.name;
        FontStore fonts(VELORA_SOURCE_DIR "/fonts");
        PageList pages = sample_quote(3);
        const auto sink = make_exporter(c.format, path, {fonts, {}});
        sink->begin(pages.document);
        for (Page& page : pages.pages) sink->page(std::move(page));
        sink->end();
        EXPECT_TRUE(bytes_of(path).starts_with(c.start)) << c.name;
    }
}

TEST(Formats, AnExportThatIsGivenUpLeavesTheEarlierFile)
{
    for (const auto format : {"html", "xls", "rtf", "xlsx", "docx", "csv"}) {
        std::filesystem::create_directories(VELORA_TEST_SCRATCH "/given-up");
        const auto path = std::filesystem::path(VELORA_TEST_SCRATCH) / "given-up" / "kept.out";
        std::ofstream(path) << "earlier";
        FontStore fonts(VELORA_SOURCE_DIR "/fonts");
        PageList pages = sample_quote(1);
        {
            const auto sink = make_exporter(format, path, {fonts, {}});
            sink->begin(pages.document);
            sink->page(std::move(pages.pages[0]));
        }
        EXPECT_EQ(bytes_of(path), "earlier");
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(path.parent_path()), {}), 1);
    }
}

}  // namespace
}  // namespace velora::engine
