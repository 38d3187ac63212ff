#include <algorithm>

#include "host/faults/faulty_disk.h"
#include "host/faults/walked_run.h"
#include "platform/export_formats.h"

namespace velora::testing {
namespace {

using ::testing::HasSubstr;

/// What the program writes while the disk fails.
class FaultyFile : public WalkedRun {};

TEST_F(FaultyFile, ADocumentIsTheEarlierOneOrWhole)
{
    for (const Document& document : documents()) {
        SCOPED_TRACE(document.kind);
        walk(&Line::disk, kFirst, [&](Line& line) {
            const Left left = deliver(line, document);
            expect_nothing_half(left, document);
            if (!left.is_delivered()) {
                EXPECT_THAT(left.boxes, HasSubstr(kDiskWords));
            }
        });
    }
}

TEST_F(FaultyFile, AFileOfEachFormatIsTheEarlierOneOrWhole)
{
    for (const ExportFormatRecord& format : kExportFormats) {
        SCOPED_TRACE(format.name);
        std::string whole;
        walk(&Line::disk, kFirst, [&](Line& line) {
            const Left left =
                deliver(line, quote(), {"--export", std::string(format.name), "--output", target().string()});
            if (whole.empty()) whole = left.text;
            EXPECT_NE(whole, kEarlier);
            EXPECT_EQ(left.files, Strings{"it.pdf"});
            EXPECT_TRUE(left.text == (left.is_delivered() ? whole : kEarlier)) << left.ran.status << left.text.size();
            EXPECT_EQ(left.boxes.find(kDiskWords) == std::string::npos, left.is_delivered()) << left.boxes;
        });
    }
}

TEST_F(FaultyFile, APipeIsTheEarlierOneOrWhole)
{
    const fs::path pipe = scratch("pipe") / "it.json";
    fs::create_directory(scratch("pipe"));
    std::string whole;
    walk(&Line::disk, kFirst, [&](Line& line) {
        write_text(pipe, kEarlier);
        const Left left = deliver(line, quote(), {"--output", target().string(), "--pipe", pipe.string()});
        if (whole.empty()) whole = file_text(pipe);
        EXPECT_EQ(files_in(scratch("pipe")), Strings{"it.json"});
        EXPECT_EQ(files_in(scratch("export")), Strings{"it.pdf"});
        const std::string now = file_text(pipe);
        EXPECT_TRUE(now == whole || (now == kEarlier && !left.is_delivered())) << left.ran.status << left.ran.err;
        EXPECT_EQ(left.boxes.find(kDiskWords) == std::string::npos, left.is_delivered()) << left.boxes;
    });
}

TEST_F(FaultyFile, ListsAndSettingsAreTheOldOrTheNewOnes)
{
    const fs::path list = folder() / "Reports" / "DEMOCO_QuoteReports.ini";
    const fs::path script = scratch("script.jsonl");
    const std::string old_list = file_text(list);
    write_text(script, R"({"options":"export"}
{"type":"txtExport","text":"/export"}
{"click":"lvbOK"}
)");
    struct Case {
        const char* what;
        Strings command;
        fs::path file;
        std::string earlier;
    };
    for (const auto& c :
         {Case{"a list that grows", {"add-report", "quote", "Mine", scratch("own.rpt").string()}, list, old_list},
          Case{"a list that shrinks", {"remove-report", "quote", "Quote, Taxes"}, list, old_list},
          Case{"settings that are there", {"drive", script.string()}, settings(), "[DEMOCO_Report]\nName=Office\n"}}) {
        SCOPED_TRACE(c.what);
        const fs::path place = c.file.parent_path();
        std::string later;
        walk(&Line::disk, kAll, [&](Line& line) {
            write_text(c.file, c.earlier);
            const Strings before = files_in(place);
            const Ran ran = run_on(line, c.command);
            const std::string now = file_text(c.file);
            if (later.empty()) later = now;
            EXPECT_NE(later, c.earlier);
            EXPECT_TRUE(now == later || now == c.earlier) << now;
            const std::string said = ran.err + ran.out;
            EXPECT_EQ(said.find(kDiskWords) == std::string::npos, now == later) << ran.status << said;
            if (c.command.front() != "drive") {
                EXPECT_EQ(ran.status, now == later ? 0 : 1) << said;
            }
            // The file that writers wait for stays where it was made.
            Strings after = files_in(place);
            std::erase_if(after, [&](const std::string& name) {
                return !std::ranges::count(before, name) && fs::file_size(place / name) == 0;
            });
            EXPECT_EQ(after, before);
        });
    }
}

TEST_F(FaultyFile, AnApplicationFolderIsWholeOrNotThere)
{
    const fs::path place = scratch("new") / "acme";
    fs::create_directory(scratch("new"));
    walk(&Line::disk, kFirst, [&](Line& line) {
        fs::remove_all(place);
        const Ran ran = run_on(line, {"init", place.string()});
        EXPECT_EQ(files_in(scratch("new")), ran.status == 0 ? Strings{"acme"} : Strings{}) << ran.err;
        EXPECT_EQ(ran.err.empty(), ran.status == 0) << ran.err;
    });
}

}  // namespace
}  // namespace velora::testing
