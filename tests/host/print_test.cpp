#include <gmock/gmock.h>

#include <memory>

#include "host/program.h"
#include "support/print_shop.h"

namespace velora::testing {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

/// On a printer that is there, with everything between the command line and the paper.
class Printing : public HostTest {
protected:
    static void SetUpTestSuite() { shop_ = std::make_unique<test::PrintShop>(); }
    static void TearDownTestSuite() { shop_.reset(); }
    void SetUp() override
    {
        HostTest::SetUp();
        if (!shop_->missing().empty()) GTEST_SKIP() << "no printer here:" << shop_->missing();
        ASSERT_TRUE(shop_->is_open());
    }
    [[nodiscard]] Ran print(const std::string& printer) const
    {
        return run(in_company(company(), {"quote", "--number", "Q-10052", "--print", printer}));
    }

    static inline std::unique_ptr<test::PrintShop> shop_;
};

TEST_F(Printing, ThePagesArriveAsTheyAreExportedUnderTheDocumentsName)
{
    const fs::path exported = scratch("quote.pdf");
    ASSERT_EQ(run(in_company(company(), {"quote", "--number", "Q-10052", "--output", exported.string()})).status, 0);
    const Ran ran = print("ffic");
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, AllOf(HasSubstr("\"Q-10052 - Les Aciéries Beauharnois inc.\" went to the printer as job ")));
    const std::string pages = file_text(exported);
    EXPECT_TRUE(shop_->arrived("10052", pages.size()) == pages) << "other pages arrived";
    EXPECT_THAT(shop_->told("media"), ::testing::Not(::testing::IsEmpty()));
}

TEST_F(Printing, APrinterThatDoesNotPrintIsABoxWithItsWords)
{
    const size_t before = shop_->count();
    const Ran ran = print("Stopped");
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, AllOf(HasSubstr("482"), HasSubstr("is stopped: Out of toner. Nothing was printed.")));
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(shop_->count(), before);
}

}  // namespace
}  // namespace velora::testing
