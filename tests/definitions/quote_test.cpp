#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "definitions/shipped.h"

namespace velora {
namespace {

void set_everywhere(HeldRows& rows, std::string_view field, const Value& value)
{
    const size_t column = rows.column(field);
    for (auto& row : rows.rows) row[column] = value;
}

/// So many one-line items under the golden quote's head.
HeldRows quote_of(size_t lines)
{
    HeldRows rows = golden_rows("Quote");
    const size_t kind = rows.column("Detail Type");
    const size_t line = rows.column("Detail Line");
    std::erase_if(rows.rows, [&](const auto& row) { return row[kind] != Value("Item"); });
    const auto first = rows.rows.front();
    rows.rows.assign(lines, first);
    for (size_t at = 0; at < lines; ++at) rows.rows[at][line] = static_cast<int32_t>(at + 1);
    set_everywhere(rows, "Detail Desc", "Ball bearing");
    return rows;
}

TEST(QuoteDefinition, ALineWithTwoRemarksIsPrintedOnceWithBoth)
{
    HeldRows rows = golden_rows("Quote");
    const Filled report = fill_shipped("Quote", rows);
    EXPECT_EQ(times_shown(report, "MTR-5.0HP-184T"), 1U);
    EXPECT_EQ(times_shown(report, "Supplied with the conduit box on the left (F1), seen from the shaft end."), 1U);
    EXPECT_EQ(times_shown(report, "Check the nameplate voltage before packing."), 1U);
}

TEST(QuoteDefinition, EqualChargesWithoutALineNumberAreAllPrinted)
{
    HeldRows rows = golden_rows("Confirmation, Taxes");
    const size_t kind = rows.column("Detail Type");
    std::erase_if(rows.rows, [&](const auto& row) { return row[kind] != Value("Charge"); });
    ASSERT_FALSE(rows.rows.empty());
    rows.rows.assign(3, rows.rows.front());
    const auto charge = *rows.rows.front()[rows.column("Detail Item Number")].get_if<std::string>();
    EXPECT_EQ(times_shown(fill_shipped("Confirmation, Taxes", rows), charge), 3U);
}

TEST(QuoteDefinition, TotalsShareTheirPageWithALineAndEveryPageHasTheTableHead)
{
    for (size_t lines = 1; lines <= 75; ++lines) {
        HeldRows rows = quote_of(lines);
        const Filled report = fill_shipped("Quote", rows);
        EXPECT_EQ(times_shown(report, "Ball bearing"), lines);
        for (const auto& page : report.pages.pages) EXPECT_TRUE(shows(page, "Unit Price")) << lines << " lines";
        EXPECT_TRUE(shows(report.pages.pages.back(), "Ball bearing")) << lines << " lines";
        EXPECT_TRUE(shows(report.pages.pages.back(), "Subtotal")) << lines << " lines";
        EXPECT_TRUE(shows(report.pages.pages.back(), "Total")) << lines << " lines";
    }
}

TEST(QuoteDefinition, TheDiscountIsShownOnlyWhenThereIsOne)
{
    struct Case {
        const char* why;
        const char* net;
        size_t shown;
    };
    for (const auto& c : {Case{"net below the subtotal", "90.00", 1}, Case{"net equal to it", "100.00", 0}}) {
        HeldRows rows = quote_of(1);
        set_everywhere(rows, "Quote SubTotal", "100.00");
        set_everywhere(rows, "Quote Net Total", c.net);
        const Filled report = fill_shipped("Quote", rows);
        EXPECT_EQ(times_shown(report, "Net total"), c.shown) << c.why;
        EXPECT_EQ(times_shown(report, "Subtotal"), 1U) << c.why;
    }
}

TEST(QuoteDefinition, TaxesAreBrokenOutForTheUsedSlotsOnly)
{
    HeldRows rows = golden_rows("Quote, Taxes");
    set_everywhere(rows, "Tax Authority1", "GST");
    set_everywhere(rows, "Tax Authority2", "");
    set_everywhere(rows, "Tax Authority3", "CITY");
    set_everywhere(rows, "Tax Amount3", 1234.5F);
    set_everywhere(rows, "Tax Amount5", 77.25F);
    const Filled report = fill_shipped("Quote, Taxes", rows);
    EXPECT_EQ(times_shown(report, "GST"), 1U);
    EXPECT_EQ(times_shown(report, "CITY"), 1U) << "a gap in the group does not hide what follows";
    EXPECT_EQ(times_shown(report, "1,234.50"), 1U);
    EXPECT_EQ(times_shown(report, "77.25"), 0U) << "a slot without an authority";
}

TEST(QuoteDefinition, AmountsOfTaxesAreWrittenAsTheRunSays)
{
    struct Case {
        const char *why, *pattern, *marks, *above, *below;
    };
    HeldRows rows = golden_rows("Quote, Taxes");
    set_everywhere(rows, "Tax Authority1", "GST");
    set_everywhere(rows, "Tax Amount1", 11880.27F);
    set_everywhere(rows, "Tax Authority2", "QST");
    set_everywhere(rows, "Tax Amount2", -1234.5F);
    for (const Case& c : {
             Case{"dollars", "#,##0.00", "en@marks=.|,", "11,880.27", "-1,234.50"},
             Case{"yen", "#,##0", "en@marks=.|,", "11,880", "-1,234"},
             Case{"a dinar of three places, with a comma", "#,##0.000;(#,##0.000)", "en@marks=,|.", "11.880,270",
                  "(1.234,500)"},
             Case{"no mark of thousands, the sign behind", "#,##0.00;#,##0.00-", "en@marks=.|", "11880.27", "1234.50-"},
         }) {
        for (const char* region : {"en_US", "de_DE"}) {
            rows.rewind();
            const Filled report =
                fill_shipped("Quote, Taxes", rows, region, {{"Amount Pattern", c.pattern}, {"Amount Marks", c.marks}});
            EXPECT_EQ(times_shown(report, c.above), 1U) << c.why << " in " << region;
            EXPECT_EQ(times_shown(report, c.below), 1U) << c.why << " in " << region;
        }
    }
}

TEST(QuoteDefinition, ItemsAndChargesAreNumberedWithoutAGap)
{
    HeldRows rows = golden_rows("Quote");
    const size_t kind = rows.column("Detail Type");
    const size_t line = rows.column("Detail Line");
    const auto row_of = [&](const char* wanted) {
        return *std::ranges::find_if(rows.rows, [&](const auto& row) { return row[kind] == Value(wanted); });
    };
    const auto item = row_of("Item");
    const auto comment = row_of("Comment");
    auto charge = row_of("Charge");
    charge[line] = nullptr;
    rows.rows = {comment, item, item, comment, comment, item, charge, charge};
    const std::vector<int32_t> lines{1, 2, 2, 3, 4, 5};  // the second row of line 2 is its second remark
    for (size_t at = 0; at < lines.size(); ++at) rows.rows[at][line] = lines[at];
    const Filled report = fill_shipped("Quote", rows);
    std::vector<std::string> numbers;
    for (const auto& placed : texts_of(report.pages.pages.front())) {
        if (placed.place.x == 40) numbers.push_back(placed.text);
    }
    EXPECT_THAT(numbers, ::testing::ElementsAre("#", "1", "2", "3", "4"));
}

TEST(QuoteDefinition, AHeadingStandsWithTheItemBelowIt)
{
    for (size_t before = 5; before < 45; ++before) {
        constexpr size_t kBehind = 4;  // the totals may take the last one along
        HeldRows rows = quote_of(before + kBehind);
        auto heading = rows.rows.back();
        heading[rows.column("Detail Type")] = "Comment";
        heading[rows.column("Detail Desc")] = "Heading";
        rows.rows[before][rows.column("Detail Desc")] = "First below";
        rows.rows.insert(rows.rows.begin() + static_cast<std::ptrdiff_t>(before), heading);
        for (size_t at = 0; at < rows.rows.size(); ++at) {
            rows.rows[at][rows.column("Detail Line")] = static_cast<int32_t>(at + 1);
        }
        const Filled report = fill_shipped("Quote", rows);
        EXPECT_EQ(times_shown(report, "Heading"), 1U);
        for (const auto& page : report.pages.pages) {
            EXPECT_EQ(shows(page, "Heading"), shows(page, "First below")) << before << " items before it";
        }
    }
}

TEST(QuoteDefinition, TheHouseMayGiveALogoItsRegistrationAndTheTaxesInItsPrices)
{
    for (const char* name : {"Quote", "Quote, Taxes", "Confirmation, Taxes"}) {
        HeldRows rows = golden_rows(name);
        const Filled plain = fill_shipped(name, rows);
        EXPECT_EQ(times_shown(plain, "Prices include CAHST"), 0U);
        rows.rewind();
        const std::string picture =
            "data:image/"
            "png;base64,iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mP8z8BQDwAEhQGAhKmMIQAAAABJRU5ErkJg"
            "gg==";
        const Filled full = fill_shipped(
            name, rows, "en_US",
            {{"Tax Registration", "GST/HST 10512 3344 RT0001"}, {"Included Taxes", "CAHST"}, {"Logo", picture}});
        EXPECT_EQ(times_shown(full, "Prices include CAHST"), 1U) << name;
        size_t registrations = 0;
        for (const auto& placed : texts_of(full.pages.pages.front())) {
            registrations += placed.text.ends_with("\nGST/HST 10512 3344 RT0001") ? 1 : 0;
        }
        EXPECT_EQ(registrations, 1U) << name;
        size_t pictures = 0;
        engine::walk_elements(full.pages.pages.front().elements, [&](const engine::Element& element, const auto&) {
            pictures += std::holds_alternative<engine::Image>(element.content) ? 1 : 0;
        });
        EXPECT_EQ(pictures, 1U) << name;
        EXPECT_EQ(full.warnings, std::vector<std::string>{}) << name;
    }
}

TEST(QuoteDefinition, TheCurrencyIsTheCustomersOnlyInACompanyOfSeveral)
{
    HeldRows rows = quote_of(1);
    set_everywhere(rows, "Company Home Currency", "CAD");
    set_everywhere(rows, "Customer Currency Code", "USD");
    set_everywhere(rows, "Company MultiCurrency", true);
    EXPECT_EQ(times_shown(fill_shipped("Quote", rows), "USD"), 1U);
    rows.rewind();
    set_everywhere(rows, "Company MultiCurrency", false);
    EXPECT_EQ(times_shown(fill_shipped("Quote", rows), "CAD"), 1U);
}

TEST(PickingSlip, LinesThatOnlyLookAlikeAreNotMerged)
{
    HeldRows rows = golden_rows("Picking Slip");
    const size_t remark = rows.column("Detail Item Comm/Ins");
    const auto item = *rows.rows.front()[rows.column("Detail Item Number")].get_if<std::string>();
    rows.rows.assign(2, rows.rows.front());
    rows.rows[0][remark] = "Comment";
    rows.rows[1][remark] = "Instruction";
    EXPECT_EQ(times_shown(fill_shipped("Picking Slip", rows), item), 1U) << "one line with two remarks";
    rows.rewind();
    rows.rows[0][remark] = nullptr;
    rows.rows[1][remark] = nullptr;
    EXPECT_EQ(times_shown(fill_shipped("Picking Slip", rows), item), 2U) << "two lines without a remark";
}

TEST(PickingSlip, QuantitiesOfBothKindsOfSlipAreShownAndRemarksMayBeMissing)
{
    HeldRows rows = golden_rows("Picking Slip");
    rows.rows.resize(1);
    const size_t quantity = rows.column("Detail Quantity");
    rows.rows[0][quantity] = 37;
    EXPECT_EQ(times_shown(fill_shipped("Picking Slip", rows), "37"), 1U);
    rows.rewind();
    rows.rows[0][quantity] = "37.5";
    rows.columns[rows.column("Detail Item Comm/Ins")].name = "Other";
    const Filled report = fill_shipped("Picking Slip", rows);
    EXPECT_EQ(times_shown(report, "37.5"), 1U);
    EXPECT_EQ(report.warnings, std::vector<std::string>{});
}

TEST(BackOrderItems, QuantitiesAreAddedForEachItemAndUnit)
{
    HeldRows rows = golden_rows("Back Order Items");
    rows.rows.assign(3, rows.rows.front());
    const size_t unit = rows.column("Detail Quote UofM");
    const size_t open = rows.column("Detail Back Order");
    rows.rows[0][open] = "2.5";
    rows.rows[1][open] = "1000";
    rows.rows[0][unit] = rows.rows[1][unit] = "EA";
    rows.rows[2][unit] = "BX";
    rows.rows[2][open] = nullptr;
    const Filled report = fill_shipped("Back Order Items", rows);
    EXPECT_EQ(times_shown(report, "On back order  1,002.5 EA"), 1U);
    EXPECT_EQ(times_shown(report, "On back order  0 BX"), 1U) << "a blank quantity counts as none";
}

}  // namespace
}  // namespace velora
