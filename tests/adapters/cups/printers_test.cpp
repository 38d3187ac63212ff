#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "adapters/cups/printers.h"
#include "adapters/scratch.h"
#include "support/print_shop.h"

namespace velora::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::StartsWith;

class PrinterTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { shop_ = std::make_unique<PrintShop>(); }
    static void TearDownTestSuite() { shop_.reset(); }
    void SetUp() override
    {
        if (!shop_->missing().empty()) GTEST_SKIP() << "no printer here:" << shop_->missing();
        ASSERT_TRUE(shop_->is_open());
    }

    PrintJob job(const std::string& title, const std::string& device, const std::string& bytes = "%PDF-1.4 pages")
    {
        PrintJob made;
        made.title = title;
        made.device = device;
        made.file = scratch_.write(title + ".pdf", bytes);
        return made;
    }

    static inline std::unique_ptr<PrintShop> shop_;
    Scratch scratch_;
};

TEST_F(PrinterTest, QueuesAndPrintersOfTheNetworkAreListed)
{
    std::vector<std::string> names;
    std::string model, port;
    // A printer is announced when it pleases.
    for (int round = 0; round < 10 && std::ranges::find(names, "Velora_Test") == names.end(); ++round) {
        names.clear();
        for (const Printer& printer : cups_printers()->list()) {
            names.push_back(printer.DeviceName);
            if (printer.DeviceName == "Velora_Test") model = printer.DriverName;
            if (printer.DeviceName == "Office") port = printer.Port;
        }
    }
    EXPECT_THAT(names, IsSupersetOf({"Login", "Office", "Refusing", "Stopped", "Velora_Test"}));
    EXPECT_EQ(model, "Example Printer");
    EXPECT_THAT(port, StartsWith("ipp://127.0.0.1:"));
}

TEST_F(PrinterTest, AQueueIsFoundByTheFirstThatFits)
{
    const auto printers = cups_printers();
    const auto found = printers->first([](const Printer& printer) { return printer.DeviceName.starts_with("O"); });
    ASSERT_TRUE(found);
    EXPECT_EQ(found->DeviceName, "Office");
    EXPECT_FALSE(printers->first([](const Printer& printer) { return printer.DeviceName == "Attic"; }));
    ASSERT_TRUE(printers->usual());
    EXPECT_EQ(printers->usual()->DeviceName, "Login") << "none is the default: the first";
}

TEST_F(PrinterTest, TheDocumentArrivesByteForByteWithWhatWasAsked)
{
    const std::string bytes = "%PDF-1.4\n" + std::string(300'000, 'p') + std::string(1, '\0') + "\xFF";
    PrintJob wanted = job("Angebot 東京", "Office", bytes);
    wanted.copies = 3;
    wanted.pages = "1-2, 5";
    wanted.paper_source = 7;
    wanted.page_width = 842;
    wanted.page_height = 595;
    const auto printers = cups_printers();
    const int first = printers->print(wanted);
    EXPECT_GT(first, 0);
    EXPECT_TRUE(shop_->arrived("angebot", bytes.size()) == bytes) << "other bytes arrived";
    EXPECT_THAT(shop_->told("job-name"), Contains("(nameWithoutLanguage) Angebot 東京"));
    EXPECT_THAT(shop_->told("copies"), Contains("(integer) 3"));
    EXPECT_THAT(shop_->told("page-ranges"), Contains("(1setOf rangeOfInteger) 1-2,5-5"));
    EXPECT_THAT(shop_->told("orientation-requested"), Contains("(enum) landscape"));
    EXPECT_THAT(shop_->told("media"), Contains("(keyword) iso_a4_210x297mm"));
    EXPECT_EQ(printers->print(job("second", "Office")), first + 1);
}

TEST_F(PrinterTest, APrinterOfTheNetworkTakesJobsWithoutAQueue)
{
    for (int round = 0; round < 10; ++round) {
        const auto printers = cups_printers();
        const auto all = printers->list();
        if (std::ranges::find(all, "Velora_Test", &Printer::DeviceName) == all.end()) continue;
        PrintJob direct = job("direct", "Velora_Test");
        direct.page_width = 595;
        direct.page_height = 842;
        direct.paper_source = 7;
        EXPECT_GT(printers->print(direct), 0);
        EXPECT_EQ(shop_->arrived("direct", 14), "%PDF-1.4 pages");
        EXPECT_THAT(shop_->told("media-col"),
                    Contains("(collection) {media-size={x-dimension=21000 y-dimension=29700} media-source=auto}"));
        return;
    }
    FAIL() << "the printer was not found";
}

TEST_F(PrinterTest, AQueueThatDoesNotPrintSaysWhyAndNothingComesOut)
{
    const auto printers = cups_printers();
    const size_t before = shop_->count();
    struct Case {
        const char* device;
        const char* says;
    };
    for (const auto& c :
         {Case{"Stopped", "The printer \"Stopped\" is stopped: Out of toner. Nothing was printed."},
          Case{"Refusing", "The printer \"Refusing\" takes no jobs: Moved to the second floor. Nothing was printed."},
          Case{"Login", "The printer \"Login\" refuses the job: it wants a login ("},
          Case{"Attic", "There is no printer \"Attic\"."}}) {
        const Fault raised = fault_of([&] { printers->print(job("never", c.device)); });
        EXPECT_EQ(raised.number(), fault::kPrinter) << c.device;
        EXPECT_THAT(raised.description(), StartsWith(c.says));
    }
    PrintJob gone = job("never", "Office");
    std::filesystem::remove(gone.file);
    EXPECT_THAT(fault_of([&] { printers->print(gone); }).description(), HasSubstr("cannot be read"));
    EXPECT_EQ(shop_->count(), before);
}

TEST(NoCups, AMachineWithoutASchedulerHasNoQueues)
{
    ::setenv("CUPS_SERVER", "127.0.0.1:1", 1);
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere", 1);
    const auto printers = cups_printers();
    EXPECT_TRUE(printers->list().empty());
    EXPECT_FALSE(printers->usual());
    EXPECT_EQ(fault_of([&] { printers->print({}); }).description(), "No printer is set up on this machine.");
    ::unsetenv("CUPS_SERVER");
    ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

}  // namespace
}  // namespace velora::test
