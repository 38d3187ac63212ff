#include "session/run_end.h"

#include "reports/custom_report.h"
#include "reports/customer_list.h"
#include "reports/quote_company.h"

namespace velora {
namespace {

using test::QuoteCompany;

/// A company whose quote 1 can be delivered by every route.
class AnsweringCompany : public QuoteCompany {
public:
    AnsweringCompany()
    {
        add({}).load();
        settings.set("Morvane\\Velora", "TESTCO_Report", "Format", "0");
    }
    RunEnd quote(int32_t id = 1, const char* definition = "quote.rpt")
    {
        return Print_Quote(state(), id, definition, 0, false, true);
    }
    RunEnd to_window() { return Print_Quote(state(), 1, "quote.rpt", 0, true, false); }
    RunEnd to_paper() { return Print_Quote(state(), 1, "quote.rpt", 0, false, false); }
    RunEnd with_refusal(Fault refusal, RunEnd (AnsweringCompany::*route)())
    {
        engine.report->refuses = std::move(refusal);
        return (this->*route)();
    }
    RunEnd exported() { return quote(); }
};

TEST(RunEnd, SaysHowARunEndedWhateverBoxesWereShown)
{
    struct Case {
        const char* why;
        RunEnd expected;
        size_t boxes;
        std::function<RunEnd(AnsweringCompany&)> run;
    };
    const Fault no_folder(fault::kPathAccess, "No such folder");
    const Fault cancelled = fault::of(fault::kCancelled);
    for (const auto& c : std::vector<Case>{
             {"a file", RunEnd::Delivered, 0, [](auto& q) { return q.quote(); }},
             {"a window", RunEnd::Delivered, 0, [](auto& q) { return q.to_window(); }},
             {"paper", RunEnd::Delivered, 0, [](auto& q) { return q.to_paper(); }},
             {"a lookup's box does not make it fail", RunEnd::Delivered, 1,
              [](auto& q) {
                  q.state().gQuoteStatus.reset();
                  return q.quote();
              }},
             {"no such quote", RunEnd::NotFound, 1, [](auto& q) { return q.quote(99); }},
             {"no such custom report", RunEnd::NotFound, 1,
              [](auto& q) { return Custom_Reports(q.state(), "nowhere.rpt", "Mine", false, true); }},
             {"nobody to list", RunEnd::NoData, 1,
              [](auto& q) { return Print_CustomerList(q.state(), "list.rpt", false, true); }},
             {"no definition", RunEnd::Failed, 1, [](auto& q) { return q.quote(1, "missing.rpt"); }},
             {"a refused file", RunEnd::Failed, 1,
              [&](auto& q) { return q.with_refusal(no_folder, &AnsweringCompany::exported); }},
             {"a refused window", RunEnd::Failed, 1,
              [&](auto& q) { return q.with_refusal(no_folder, &AnsweringCompany::to_window); }},
             {"a refused printer", RunEnd::Failed, 1,
              [&](auto& q) { return q.with_refusal(no_folder, &AnsweringCompany::to_paper); }},
             {"the user cancels", RunEnd::Cancelled, 0,
              [&](auto& q) { return q.with_refusal(cancelled, &AnsweringCompany::to_paper); }},
             {"no format was chosen, which nobody tells", RunEnd::Failed, 0,
              [](auto& q) {
                  q.settings.set("Morvane\\Velora", "TESTCO_Report", "Format", "-1");
                  return q.quote();
              }},
         }) {
        AnsweringCompany company;
        EXPECT_EQ(c.run(company), c.expected) << c.why;
        EXPECT_EQ(company.state().run_end, c.expected) << c.why;
        EXPECT_EQ(company.boxes().size(), c.boxes) << c.why << ": " << company.box_text(0);
    }
}

}  // namespace
}  // namespace velora
