#include "host/faults/faulty_ports.h"
#include "host/faults/walked_run.h"

namespace velora::testing {
namespace {

using ::testing::HasSubstr;

/// Documents while a database, an accounting store, a printer or a mail server fails.
class FaultyDocument : public WalkedRun {};

TEST_F(FaultyDocument, ADatabaseThatFailsAtAnyCallIsToldInItsWords)
{
    for (const Document& document : documents()) {
        SCOPED_TRACE(document.kind);
        walk(&Line::database, kAll, [&](Line& line) {
            const Left left = deliver(line, document);
            expect_nothing_half(left, document);
            EXPECT_EQ(left.boxes.find(kDriverWords) != std::string::npos, line.database.was_met()) << left.boxes;
        });
    }
}

TEST_F(FaultyDocument, AnAccountingStoreThatFailsAtAnyKindOfCallIsToldInItsWords)
{
    for (const Document& document : documents()) {
        SCOPED_TRACE(document.kind);
        walk(&Line::accounting, kFirst, [&](Line& line) {
            const Left left = deliver(line, document);
            expect_nothing_half(left, document);
            EXPECT_EQ(left.ran.err.find(kDriverWords) != std::string::npos, line.accounting.was_met()) << left.ran.err;
        });
    }
}

TEST_F(FaultyDocument, WhatDoesNotReachThePrinterIsNotTold)
{
    for (const Document& document : documents()) {
        SCOPED_TRACE(document.kind);
        walk(&Line::printers, kAll, [&](Line& line) {
            const Left left = deliver(line, document, {"--print", "Office"});
            const bool is_met = line.printers.was_met();
            EXPECT_EQ(left.ran.status, is_met ? 1 : 0) << left.boxes;
            EXPECT_EQ(left.boxes.find(kPrinterWords) != std::string::npos, is_met) << left.boxes;
            EXPECT_EQ(left.ran.out.find("job") != std::string::npos, line.printed > 0) << left.ran.out;
            EXPECT_EQ(left.marks != "00", document.is_marked && !is_met) << left.marks;
            EXPECT_EQ(left.text, kEarlier);
            if (is_met && !document.in_slips) {
                EXPECT_EQ(line.printed, 0U);
            }
        });
    }
}

TEST_F(FaultyDocument, AMailThatDidNotGoIsToldAndItsFileStays)
{
    write_text(settings(), "[DEMOCO_Report]\nSMTP=127.0.0.1\nSender=Anna\nSendEmail=anna@morvane.example\n");
    for (const Document& document : documents()) {
        SCOPED_TRACE(document.kind);
        walk(&Line::mail, kAll, [&](Line& line) {
            const Left left = deliver(
                line, document, {"--output", scratch("export").string() + "/", "--email", "--email-to", "b@x.example"});
            const bool is_met = line.mail.was_met();
            EXPECT_GT(left.files.size(), document.in_slips ? 2U : 1U) << "beside the file that stood there before";
            EXPECT_EQ(line.sent, is_met ? 0U : 1U);
            EXPECT_EQ(left.ran.status, is_met ? 1 : 0) << left.ran.err;
            EXPECT_EQ(left.boxes.find(kMailWords) != std::string::npos, is_met) << left.boxes;
        });
        for (const std::string& file : files_in(scratch("export"))) fs::remove(scratch("export") / file);
    }
}

}  // namespace
}  // namespace velora::testing
