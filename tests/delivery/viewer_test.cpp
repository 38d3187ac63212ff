#include "delivery/viewer.h"

#include "support/test_company.h"

namespace velora {
namespace {

using test::TestCompany;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Initialize = bool (*)(SessionState&, const std::shared_ptr<OpenedReport>&, const std::string&);

struct Procedure {
    const char* name;
    Initialize call;
};

constexpr Procedure kProcedures[] = {{"frmViewer.InitializeTTX", InitializeTTX},
                                     {"frmViewer.InitializeCustom", InitializeCustom}};

TEST(Viewer, EachCallOpensAWindowOfItsOwnUnderTheCaption)
{
    for (const auto& procedure : kProcedures) {
        TestCompany company;
        for (const char* caption : {"Velora - /reports/Quote.rpt", "Velora - /reports/Quote.rpt", ""}) {
            procedure.call(company.state(), company.engine.report, caption);
        }
        EXPECT_THAT(company.user.captions,
                    ElementsAre("Velora - /reports/Quote.rpt", "Velora - /reports/Quote.rpt", ""))
            << procedure.name;
        EXPECT_THAT(company.engine.report->calls, ElementsAre("view", "view", "view")) << procedure.name;
        EXPECT_THAT(company.boxes(), IsEmpty()) << procedure.name;
    }
}

TEST(Viewer, AFaultIsToldAndGoesNoFurther)
{
    for (const auto& procedure : kProcedures) {
        TestCompany company;
        company.engine.report->refuses = Fault(fault::kDatabase, "The rows are gone.");
        procedure.call(company.state(), company.engine.report, "refuses");
        procedure.call(company.state(), nullptr, "no report");
        ASSERT_EQ(company.boxes().size(), 2U) << procedure.name;
        EXPECT_THAT(company.box_text(0), HasSubstr("The rows are gone."));
        EXPECT_THAT(company.box_text(1), HasSubstr("91: "));
        for (const auto& box : company.boxes()) EXPECT_THAT(box.text, HasSubstr(procedure.name));
        EXPECT_THAT(company.user.captions, IsEmpty()) << "no window stays behind";
    }
}

TEST(Viewer, WithoutAUserInterfaceNothingIsShownAndNothingBreaks)
{
    for (const auto& procedure : kProcedures) {
        TestCompany company;
        company.state().ports.user = nullptr;
        EXPECT_NO_THROW(procedure.call(company.state(), company.engine.report, "nobody")) << procedure.name;
        EXPECT_THAT(company.engine.report->calls, IsEmpty());
    }
}

}  // namespace
}  // namespace velora
