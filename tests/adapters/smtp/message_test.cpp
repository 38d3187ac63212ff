#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "adapters/scratch.h"
#include "adapters/smtp/mail_events.h"
#include "adapters/smtp/mime_message.h"
#include "support/mail_server.h"

namespace velora::test {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::StartsWith;
using Lines = std::vector<std::string>;

/// What a mail reader that is not ours finds in the mail that arrived.
class ReadMail : public ::testing::Test {
protected:
    static void SetUpTestSuite()
    {
        const std::filesystem::path folder = std::filesystem::path(VELORA_TEST_SCRATCH) / "arrived";
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        server_ = std::make_unique<MailServer>(folder.string());
    }
    static void TearDownTestSuite() { server_.reset(); }

    Lines arrived(MailProperties mail)
    {
        mail.SMTPHost = server_->place();
        ToldEvents events;
        smtp_mail_transport(day_, {})->Send(mail, events);
        EXPECT_EQ(events.end, "sent");
        const Lines read = server_->mail(++sent_);
        EXPECT_THAT(read, IsSupersetOf(Lines{"longest line below 999: True", "bare line ends: 0", "defects: []"}));
        return read;
    }

    Scratch scratch_;
    FixedDay day_;
    static inline std::unique_ptr<MailServer> server_;
    static inline int sent_ = 0;
};

TEST_F(ReadMail, HeadersAreReadAsTheyWereTyped)
{
    const std::string long_word(300, 'x');
    std::string long_text = "Offer";
    for (int word = 0; word < 60; ++word) long_text += " number " + std::to_string(word);
    struct Case {
        const char* why;
        std::string subject;
    };
    for (const Case& c : {Case{"plain", "Your quote Q-10052"}, Case{"other scripts", "Quote für 東京 – “ok” 😀"},
                          Case{"looks encoded", "=?UTF-8?B?QUJD?= and =?"}, Case{"long", long_text},
                          Case{"one long word", long_word}, Case{"blanks inside", "two  blanks   three"},
                          Case{"a tab", "left\tright"}, Case{"no header of its own", "Bcc: x@y.example"}}) {
        auto mail = plain_mail("");
        mail.Subject = c.subject;
        EXPECT_THAT(arrived(mail), Contains("Subject: " + c.subject)) << c.why;
    }
    auto mail = plain_mail("");
    mail.Subject = "broken \xFF byte";
    EXPECT_THAT(arrived(mail), Contains("Subject: broken \xEF\xBF\xBD byte"));
}

TEST_F(ReadMail, NamesGoWithAddressesInTheirOrder)
{
    auto mail = plain_mail("");
    mail.FromDisplayName = "Schmidt, Åsa \"Sales\"";
    mail.Recipient = "a@x.example; b@x.example;;c@x.example;";
    mail.RecipientDisplayName = "Dr. A;;C (buyer) \\ \"boss\"";
    mail.CcRecipient = "d@x.example;e@x.example";
    mail.CcDisplayName = std::string(200, 'n') + "東";
    mail.BccRecipient = "hidden@x.example;a@X.EXAMPLE;A@x.example";
    const Lines read = arrived(mail);
    EXPECT_THAT(read, IsSupersetOf(Lines{
                          R"(from is: 'Schmidt, Åsa "Sales"' sales@morvane.example)", "to is: 'Dr. A' a@x.example",
                          "to is: '' b@x.example", R"(to is: 'C (buyer) \\ "boss"' c@x.example)",
                          "cc is: '" + std::string(200, 'n') + "東' d@x.example", "cc is: '' e@x.example"}));
    Lines told;
    for (const auto& line : read) {
        if (line.starts_with("told: ")) {
            told.push_back(line.substr(6));
        } else {
            EXPECT_THAT(line, Not(HasSubstr("hidden"))) << "a blind copy is told to nobody";
        }
    }
    EXPECT_EQ(told, (Lines{"a@x.example", "b@x.example", "c@x.example", "d@x.example", "e@x.example",
                           "hidden@x.example", "A@x.example"}))
        << "each once; capitals make another mailbox but not another domain";
}

TEST_F(ReadMail, TextArrivesLineForLine)
{
    struct Case {
        const char* why;
        std::string typed;
        std::string read;
    };
    for (const Case& c : {Case{"each sort of line end", "a\nb\r\nc\rd", R"('a\r\nb\r\nc\r\nd\r\n')"},
                          Case{"a full stop alone ends no mail", "one\n.\n..two\n", R"('one\r\n.\r\n..two\r\n')"},
                          Case{"blanks and marks", "a \n\tb=3D\n", R"('a \r\n\tb=3D\r\n')"},
                          Case{"other scripts", "Grüße 東京", R"('Grüße 東京\r\n')"},
                          Case{"a long line", std::string(3000, 'z'), "'" + std::string(3000, 'z') + R"(\r\n')"},
                          Case{"nothing", "", "''"},
                          Case{"looks like a boundary", "--=_velora_part--", R"('--=_velora_part--\r\n')"}}) {
        auto mail = plain_mail("");
        mail.Message = c.typed;
        if (c.typed.starts_with("--")) mail.Attachment = scratch_.write("a.pdf", "x");
        EXPECT_THAT(arrived(mail), Contains("text: " + c.read)) << c.why;
    }
}

TEST_F(ReadMail, AttachmentsComeWithNameTypeAndBytes)
{
    const std::string long_name = "Sehr langer Name einer Preisliste für " + std::string(60, 'y') + " 東京 №.XLS";
    auto mail = plain_mail("");
    mail.Attachment = scratch_.write("Quote 1.pdf", std::string("%PDF\0\r\n.\n", 10)) + " ;" +
                      scratch_.write("Ünï \"q\" \\ %20.txt", "Größe") + ";" + scratch_.write(long_name, "") + ";" +
                      scratch_.write("raw.txt", "\xE4") + ";" + scratch_.write("what", std::string(100'000, 'b'));
    EXPECT_THAT(
        arrived(mail),
        IsSupersetOf(Lines{R"(attachment: 'Quote 1.pdf' application/pdf 10 b'%PDF\x00\r\n.\n\x00')",
                           R"(attachment: 'Ünï "q" \\ %20.txt' text/plain; charset="utf-8" 7 b'Gr\xc3\xb6\xc3\x9fe')",
                           "attachment: '" + long_name + "' application/vnd.ms-excel 0 b''",
                           R"(attachment: 'raw.txt' text/plain 1 b'\xe4')",
                           "attachment: 'what' application/octet-stream 100000 b'bbbbbbbbbbbbbbbbbbbb'"}));
}

TEST_F(ReadMail, PriorityReceiptDayAndNumberOfTheMessage)
{
    auto mail = plain_mail("");
    const Lines usual = arrived(mail);
    EXPECT_THAT(usual, IsSupersetOf(Lines{"X-Priority: 3", "Importance: normal", "Reply-To: sales@morvane.example"}));
    EXPECT_THAT(usual, Contains(ContainsRegex("^Date: Mon, 15 Jun 2026 [0-9:]+ [+-][0-9]+$")));
    EXPECT_THAT(usual, Not(Contains(HasSubstr("Disposition-Notification-To"))));
    mail.Priority = 5;
    mail.Receipt = true;
    const Lines low = arrived(mail);
    EXPECT_THAT(low, IsSupersetOf(Lines{"X-Priority: 5", "Importance: low",
                                        "Disposition-Notification-To: sales@morvane.example"}));
    mail.Priority = 1;
    const Lines high = arrived(mail);
    EXPECT_THAT(high, IsSupersetOf(Lines{"X-Priority: 1", "Importance: high"}));
    const auto id = [](const Lines& lines) {
        for (const auto& line : lines) {
            if (line.starts_with("Message-ID: <")) return line;
        }
        return std::string();
    };
    EXPECT_THAT(id(low), ContainsRegex("^Message-ID: <[0-9a-f]+@morvane.example>$"));
    EXPECT_NE(id(low), id(high));
}

TEST(DryRun, WritesTheSameBytesEachTime)
{
    const Scratch scratch;
    const FixedDay day;
    auto mail = plain_mail("mail.example");
    mail.BccRecipient = "hidden@x.example";
    mail.Attachment = scratch.write("a.pdf", "x");
    std::string written[2];
    for (auto& text : written) {
        std::ostringstream out;
        ToldEvents events;
        mail_writer(day, out)->Send(mail, events);
        EXPECT_EQ(events.end, "sent");
        text = out.str();
    }
    EXPECT_EQ(written[0], written[1]);
    EXPECT_THAT(written[0], AllOf(StartsWith("Date: Mon, 15 Jun 2026 00:00:00 "),
                                  HasSubstr("\r\nMessage-ID: <dry-run@"), Not(HasSubstr("hidden"))));
}

TEST(AttachmentThatCannotBeRead, IsNamedWithItsReasonAndNothingGoesOut)
{
    const Scratch scratch;
    const FixedDay day;
    auto mail = plain_mail("mail.example");
    mail.Attachment = scratch.path("gone.pdf") + ";" + scratch.path("") + ";/dev/zero";
    std::ostringstream out;
    ToldEvents events;
    mail_writer(day, out)->Send(mail, events);
    EXPECT_EQ(events.end, "The attachment \"" + scratch.path("gone.pdf") +
                              "\" cannot be read: No such file or directory.\r\nThe attachment \"" + scratch.path("") +
                              "\" cannot be read: It is no file.\r\nThe attachment \"/dev/zero\" cannot be read: It is "
                              "no file.");
    EXPECT_EQ(out.str(), "");
}

}  // namespace
}  // namespace velora::test
