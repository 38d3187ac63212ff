#include "engine/export/export_run.h"
#include "engine/export/sample_pages.h"
#include "support/small_disk.h"
#include "support/tool_run.h"
#include "values/fault.h"

namespace velora::engine {
namespace {

TEST(PdfLock, OpensWithItsPasswordAndAllowsWhatIsListed)
{
    SamplePages sample;
    sample.document.tagged = true;
    sample.add_text({20, 20, 200, 12}, "for your eyes", sample.style());
    auto protection = std::make_shared<Protection>();
    protection->user_password = "p\xC3\xA4ss";
    protection->owner_password = "boss";
    protection->print = protection->copy = true;
    sample.document.protection = protection;
    const std::string file = word(sample.print("locked.pdf"));
    EXPECT_NE(run_tool("pdftotext " + file + " -").status, 0);
    EXPECT_EQ(run_tool("pdftotext -upw 'p\xC3\xA4ss' " + file + " -").output.substr(0, 13), "for your eyes");
    const std::string told = run_tool("qpdf --show-encryption --password='p\xC3\xA4ss' " + file).output;
    for (const char* line : {"R = 6", "print low resolution: allowed", "print high resolution: not allowed",
                             "extract for any purpose: allowed", "modify annotations: not allowed",
                             "extract for accessibility: allowed", "stream encryption method: AESv3"}) {
        EXPECT_NE(told.find(line), std::string::npos) << line << " in\n" << told;
    }
    EXPECT_EQ(run_tool("qpdf --decrypt --password=boss --check " + file).status, 0);
    const std::string open = SamplePages::scratch() / "unlocked.pdf";
    ASSERT_EQ(run_tool("qpdf --decrypt --password=boss --stream-data=uncompress " + file + " " + open).status, 0);
    EXPECT_EQ(bytes_of(open).find("pdfaid:part"), std::string::npos) << "a locked file is nothing for archives";
}

TEST(PdfLock, WithoutAnOwnersPasswordNobodyLiftsWhatIsForbidden)
{
    SamplePages sample;
    sample.add_text({20, 20, 200, 12}, "open to all", sample.style());
    sample.document.protection = std::make_shared<Protection>();
    const std::string file = word(sample.print("forbidden.pdf"));
    const std::string told = run_tool("qpdf --show-encryption " + file).output;
    EXPECT_NE(told.find("print low resolution: not allowed"), std::string::npos) << told;
    EXPECT_EQ(told.find("Supplied password is owner password"), std::string::npos) << told;
}

TEST(PdfAttachments, AreListedTakenOutAndSuitArchives)
{
    SamplePages sample;
    sample.add_text({20, 20, 200, 12}, "see the attachment", sample.style());
    Text& anchored = sample.add_text({20, 40, 200, 12}, "here", sample.style());
    anchored.details().anchor = {"here", 1};
    const std::string rows = "number,amount\n1,2.50\n";
    sample.document.attachments = std::make_shared<std::vector<Attachment>>(
        std::vector<Attachment>{{"rows (1).csv", rows}, {"\xC3\x84nderung.txt", "x"}});
    const auto file = sample.print("attached.pdf");
    const std::string list = run_tool("pdfdetach -list " + word(file)).output;
    EXPECT_NE(list.find("2 embedded files"), std::string::npos) << list;
    EXPECT_NE(list.find("\xC3\x84nderung.txt"), std::string::npos) << list;
    const auto taken = SamplePages::scratch() / "taken.csv";
    run_tool("pdfdetach -savefile 'rows (1).csv' -o " + word(taken) + " " + word(file));
    EXPECT_EQ(bytes_of(taken), rows);
    const std::string check = "/usr/bin/python3 '" VELORA_SOURCE_DIR "/tests/support/archive_check.py' ";
    EXPECT_EQ(run_tool(check + word(file)).output, "");
}

/// Enough pages for the second thread.
std::filesystem::path long_file(const std::string& name, bool tagged)
{
    SamplePages sample;
    sample.document.tagged = tagged;
    const auto target = SamplePages::scratch() / name;
    const auto sink = make_exporter("pdf", target, {sample.fonts, {}});
    sink->begin(sample.document);
    for (int page = 0; page < 500; ++page) {
        sample.add_text({20, 20, 200, 12}, "page " + std::to_string(page), sample.style());
        sink->page(std::exchange(sample.page, {}));
    }
    sink->end();
    return target;
}

TEST(LongPdf, IsWholeInOrderAndTheSameEachTime)
{
    for (const bool tagged : {false, true}) {
        const auto file = long_file("long.pdf", tagged);
        EXPECT_EQ(run_tool("qpdf --check " + word(file)).status, 0);
        EXPECT_EQ(run_tool("pdftotext -f 347 -l 347 " + word(file) + " -").output.substr(0, 9), "page 346\n");
        EXPECT_EQ(bytes_of(file), bytes_of(long_file("again.pdf", tagged)));
    }
}

TEST(LongPdf, AFullDiskIsToldAndTheEarlierFileStays)
{
    const auto target = SamplePages::scratch() / "kept.pdf";
    std::ofstream(target) << "earlier";
    {
        const test::SmallDisk disk(50'000);
        EXPECT_THROW(long_file("kept.pdf", false), Fault);
    }
    EXPECT_EQ(bytes_of(target), "earlier");
}

}  // namespace
}  // namespace velora::engine
