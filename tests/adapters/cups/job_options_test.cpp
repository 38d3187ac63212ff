#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "adapters/cups/job_options.h"
#include "adapters/scratch.h"

namespace velora::cups {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

TEST(JobOptions, PaperIsNamedUprightInItsStandardSize)
{
    struct Case {
        const char* why;
        double width, height;
        int orientation, tray;
        const char* media;
        const char* turned;
    };
    for (const auto& c :
         {Case{"A4 in whole points", 595, 842, 0, 7,
               "{media-size={x-dimension=21000 y-dimension=29700} media-source=auto}", ""},
          Case{"across by its shape", 842, 595, 0, 0, "{media-size={x-dimension=21000 y-dimension=29700}}", "4"},
          Case{"across as asked", 595, 842, 2, 0, "{media-size={x-dimension=21000 y-dimension=29700}}", "4"},
          Case{"upright as asked", 842, 595, 1, 0, "{media-size={x-dimension=21000 y-dimension=29700}}", "3"},
          Case{"letter", 612, 792, 0, 2, "{media-size={x-dimension=21590 y-dimension=27940} media-source=bottom}", ""},
          Case{"a size of its own", 300, 100, 0, 99, "{media-size={x-dimension=3528 y-dimension=10583}}", "4"},
          Case{"the printer's own paper", 0, 0, 0, 4, "{media-source=manual}", ""}}) {
        PrintJob job;
        job.page_width = c.width;
        job.page_height = c.height;
        job.orientation = c.orientation;
        job.paper_source = c.tray;
        std::string media, turned;
        for (const auto& [name, value] : job_options(job, Taker::Printer)) {
            if (name == "media-col") media = value;
            if (name == "orientation-requested") turned = value;
        }
        EXPECT_EQ(media, c.media) << c.why;
        EXPECT_EQ(turned, c.turned) << c.why;
    }
    PrintJob job;
    job.page_width = 792;
    job.page_height = 612;
    job.paper_source = 2;
    EXPECT_THAT(job_options(job, Taker::Scheduler).back(), Pair("media", "na_letter_8.5x11in,bottom"));
    job.paper_source = 7;
    EXPECT_THAT(job_options(job, Taker::Scheduler).back(), Pair("media", "na_letter_8.5x11in"));
    EXPECT_THAT(job_options({}, Taker::Printer), ElementsAre(Pair("copies", "1")))
        << "nothing is asked that nobody asked for";
}

TEST(JobOptions, PagesRiseAndAreWrittenAsRanges)
{
    PrintJob job;
    for (const auto& [typed, told] : {std::pair{"3", "3-3"}, std::pair{" 1 - 2 ,4", "1-2,4-4"}}) {
        job.pages = typed;
        EXPECT_THAT(job_options(job, Taker::Printer).back(), Pair("page-ranges", told));
    }
    for (const char* wrong : {"0", "2-1", "1,1", "3,2", "a", "1-", "1,", "1;2", "-1", "99999999999", " "}) {
        job.pages = wrong;
        EXPECT_EQ(test::fault_of([&] { job_options(job, Taker::Printer); }).number(), fault::kPrinter) << wrong;
    }
}

TEST(JobOptions, CopiesAreOfANumberThatPrintersKnow)
{
    PrintJob job;
    for (const int wrong : {0, -1, 10'000}) {
        job.copies = wrong;
        EXPECT_THROW(job_options(job, Taker::Printer), Fault) << wrong;
    }
}

TEST(JobName, IsOfAtMost255BytesInWholeCharacters)
{
    EXPECT_EQ(job_name("Quote\n1\t"), "Quote 1 ");
    EXPECT_EQ(job_name(""), "Report");
    const std::string longest = job_name("a" + std::string(200, 'b') + "ééééééééééééééééééééééééééééééééééé");
    EXPECT_EQ(longest.size(), 255U);
    EXPECT_EQ(job_name("ab" + std::string(200, 'b') + "ééééééééééééééééééééééééééééééééééé").size(), 254U);
}

}  // namespace
}  // namespace velora::cups
