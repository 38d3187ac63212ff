#include <velora/report.h>

#include <cstring>
#include <thread>

#include "host/program.h"

using namespace velora::testing;
using ::testing::HasSubstr;

namespace {

/// What a handle told its program.
struct Told {
    std::vector<std::string> boxes;
    std::string pipe;
    size_t steps = 0;
    velora_report* report = nullptr;
    velora_status nested = VELORA_DELIVERED;  ///< of a call from within a callback
    velora_status beside = VELORA_DELIVERED;  ///< of one from another thread meanwhile
    std::string not_closed;
};

class Library : public HostTest {
protected:
    [[nodiscard]] velora_options options(const fs::path& folder, Told& told)
    {
        folder_ = folder.string();
        settings_ = scratch("settings.ini").string();
        velora_options made{};
        made.size = sizeof made;
        made.folder = folder_.c_str();
        made.settings = settings_.c_str();
        made.today = "2026-06-15";
        made.region = "en-US";
        made.resources = VELORA_SOURCE_DIR;
        made.context = &told;
        made.on_box = [](void* context, const char* title, const char* text, int32_t icon) {
            static_cast<Told*>(context)->boxes.push_back(std::string(title) + "|" + text + "|" + std::to_string(icon));
        };
        made.on_progress = [](void* context, size_t, size_t) { ++static_cast<Told*>(context)->steps; };
        made.on_pipe = [](void* context, const char* json, size_t length) {
            auto& of = *static_cast<Told*>(context);
            of.pipe.assign(json, length);
            int32_t id = 0;
            of.nested = velora_find_quote(of.report, "Q-10052", &id);
            velora_close(of.report);
            of.not_closed = velora_last_error(nullptr);
            std::thread([&of] { of.beside = velora_set_printer(of.report, "Office"); }).join();
        };
        return made;
    }

    /// An open handle; closed by the caller.
    [[nodiscard]] velora_report* opened(const fs::path& folder, Told& told)
    {
        const auto made = options(folder, told);
        EXPECT_EQ(velora_open(&made, &told.report), VELORA_DELIVERED) << velora_last_error(nullptr);
        return told.report;
    }

    [[nodiscard]] static velora_status print(velora_report* report, const char* number,
                                             const char* definition = nullptr)
    {
        int32_t id = 0;
        const auto found = velora_find_quote(report, number, &id);
        if (found != VELORA_DELIVERED) return found;
        return velora_Print_CurrentQuote(report, velora_engine(report), velora_multi_curr(report), id, "", 0,
                                         definition, 1, 0);
    }

private:
    std::string folder_, settings_;
};

}  // namespace

TEST_F(Library, PrintsWhatTheCommandLinePrints)
{
    Told told;
    auto* report = opened(company(), told);
    const auto file = scratch("library.pdf").string();
    ASSERT_EQ(velora_set_export(report, "pdf", file.c_str()), VELORA_DELIVERED);
    EXPECT_EQ(print(report, "Q-10052"), VELORA_DELIVERED) << velora_last_error(report);
    EXPECT_EQ(velora_exported_file(report), file);
    EXPECT_EQ(told.nested, VELORA_USAGE) << "a call from within a callback is refused";
    EXPECT_EQ(told.beside, VELORA_USAGE) << "and one from another thread";
    EXPECT_THAT(told.not_closed, HasSubstr("not closed"));
    velora_close(report);

    const auto wanted = run(in_company(company(), {"quote", "--number", "Q-10052", "--pipe", scratch("pipe").string(),
                                                   "--output", scratch("program.pdf").string()}));
    EXPECT_EQ(wanted.status, 0) << wanted.err;
    EXPECT_EQ(file_text(file), file_text(scratch("program.pdf")));
    EXPECT_EQ(told.pipe, file_text(scratch("pipe")));
}

TEST_F(Library, SaysWhatWentWrongAndGoesOn)
{
    Told told;
    auto* report = opened(company(), told);
    ASSERT_EQ(velora_set_export(report, nullptr, scratch("a.pdf").c_str()), VELORA_DELIVERED);
    EXPECT_EQ(print(report, "Q-10052", "/nowhere.rpt"), VELORA_TOLD);
    ASSERT_EQ(told.boxes.size(), 1u);
    EXPECT_THAT(told.boxes.front(), HasSubstr("could not be found"));
    EXPECT_THAT(velora_last_error(report), HasSubstr("/nowhere.rpt"));
    EXPECT_EQ(print(report, "nowhere"), VELORA_NO_DATA);
    EXPECT_EQ(velora_Show_Printers(report, 0, velora_engine(report), 0), VELORA_TOLD);
    EXPECT_EQ(velora_Show_Emailer(report, 0, velora_engine(report)), VELORA_FAULT) << "this program has no windows";
    EXPECT_EQ(velora_last_fault(report), 429);
    EXPECT_EQ(velora_set_export(report, "papyrus", nullptr), VELORA_USAGE);
    EXPECT_EQ(print(report, "Q-10052"), VELORA_DELIVERED);
    EXPECT_STREQ(velora_last_error(report), "");
    EXPECT_EQ(velora_last_fault(report), 0);
    velora_vlTaxInformation slots[5];
    int32_t count = -1;
    EXPECT_EQ(velora_tax_authorities(report, slots, &count), VELORA_DELIVERED);
    EXPECT_GE(count, 0);
    EXPECT_LE(count, 5);
    EXPECT_NE(slots[4].Authority, nullptr);
    velora_close(report);
}

TEST_F(Library, TheFormatIsThatOfTheNameElseOfTheEnding)
{
    Told told;
    auto* report = opened(company(), told);
    struct Case {
        const char* format;
        const char* file;
        const char* opening;
    };
    for (const auto& c :
         {Case{nullptr, "a.pdf", "%PDF-"}, Case{nullptr, "a.docx", "PK"}, Case{nullptr, "a.csv", "#,Item"},
          Case{nullptr, "a.html", "<!DOCTYPE"}, Case{"rtf", "a.txt", "{\\rtf"}, Case{"xlsx", "a", "PK"},
          Case{nullptr, "a.nothing", "%PDF-"}}) {
        const auto file = scratch(c.file).string();
        ASSERT_EQ(velora_set_export(report, c.format, file.c_str()), VELORA_DELIVERED) << c.file;
        ASSERT_EQ(print(report, "Q-10052"), VELORA_DELIVERED) << c.file << velora_last_error(report);
        EXPECT_THAT(file_text(file), ::testing::StartsWith(c.opening)) << c.file;
    }
    velora_close(report);
}

TEST_F(Library, RefusesWhatIsNoCall)
{
    Told told;
    auto made = options(company(), told);
    velora_report* report = nullptr;
    EXPECT_EQ(velora_open(nullptr, &report), VELORA_USAGE);
    EXPECT_EQ(velora_open(&made, nullptr), VELORA_USAGE);
    made.size = sizeof made - 8;
    EXPECT_EQ(velora_open(&made, &report), VELORA_USAGE) << "a caller of another version";
    made.size = sizeof made;
    made.today = "yesterday";
    EXPECT_EQ(velora_open(&made, &report), VELORA_USAGE);
    made.today = nullptr;
    made.engine = 7;
    EXPECT_EQ(velora_open(&made, &report), VELORA_USAGE);
    made.engine = 0;
    made.folder = nullptr;
    EXPECT_EQ(velora_open(&made, &report), VELORA_USAGE) << "neither folder nor stores";
    made.folder = "/nowhere";
    EXPECT_EQ(velora_open(&made, &report), VELORA_TOLD);
    EXPECT_THAT(velora_last_error(nullptr), HasSubstr("/nowhere"));
    EXPECT_EQ(report, nullptr);

    int32_t id = 0;
    EXPECT_EQ(velora_find_quote(nullptr, "Q-10052", &id), VELORA_USAGE);
    EXPECT_EQ(velora_Print_QuoteExpiration(nullptr, 1, nullptr, 1, 0), VELORA_USAGE);
    EXPECT_EQ(velora_set_printer(nullptr, "Office"), VELORA_USAGE);
    EXPECT_EQ(velora_set_export(nullptr, "pdf", nullptr), VELORA_USAGE);
    EXPECT_STREQ(velora_exported_file(nullptr), "");
    EXPECT_EQ(velora_engine(nullptr), 0);
    velora_close(nullptr);
    report = opened(company(), told);
    EXPECT_EQ(velora_find_quote(report, nullptr, &id), VELORA_USAGE);
    EXPECT_EQ(velora_find_quote(report, "Q-10052", nullptr), VELORA_USAGE);
    velora_close(report);
}

TEST_F(Library, HandlesOnThreadsDoNotMeet)
{
    std::vector<std::thread> threads;
    std::vector<Told> told(4);
    std::vector<velora_status> ends(told.size(), VELORA_FAULT);
    const char* numbers[] = {"Q-10052", "Q-10001", "Q-10002", "Q-10003"};
    static_cast<void>(company());
    std::vector<velora_report*> reports;
    for (auto& one : told) reports.push_back(opened(company(), one));
    for (size_t at = 0; at < told.size(); ++at) {
        threads.emplace_back([&, at] {
            const auto file = scratch("t" + std::to_string(at) + ".pdf").string();
            velora_set_export(reports[at], "pdf", file.c_str());
            for (int round = 0; round < 3; ++round) ends[at] = print(reports[at], numbers[at]);
        });
    }
    for (auto& thread : threads) thread.join();
    for (size_t at = 0; at < told.size(); ++at) {
        EXPECT_EQ(ends[at], VELORA_DELIVERED) << velora_last_error(reports[at]);
        EXPECT_THAT(told[at].pipe, HasSubstr("\"" + std::string(numbers[at]) + "\""));
        velora_close(reports[at]);
    }
}
