#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "adapters/smtp/checked_mail.h"
#include "adapters/smtp/mail_events.h"
#include "adapters/smtp/smtp_talk.h"

namespace velora::smtp {
namespace {

using test::plain_mail;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::string refusal_of(const MailProperties& mail)
{
    try {
        check(mail);
    } catch (const MailRefused& refused) {
        return refused.what();
    }
    return "none";
}

TEST(Server, IsTakenInFourForms)
{
    struct Case {
        const char* typed;
        const char* url;
    };
    for (const auto& c :
         {Case{"mail.example", "smtp://mail.example:25"}, Case{"mail.example:2525", "smtp://mail.example:2525"},
          Case{"smtp://mail.example", "smtp://mail.example:25"},
          Case{"SMTPS://mail.example", "smtps://mail.example:465"},
          Case{"smtps://mail.example:1465", "smtps://mail.example:1465"}, Case{"127.0.0.1:99", "smtp://127.0.0.1:99"},
          Case{"[::1]:2525", "smtp://[::1]:2525"}, Case{"smtps://[fe80::1]", "smtps://[fe80::1]:465"}}) {
        EXPECT_EQ(read_server(c.typed).url(), c.url) << c.typed;
    }
    for (const char* bad : {"http://mail.example", "smtp://", "mail.example:", "mail.example:0", "mail.example:65536",
                            "mail.example:25x", "mail.example/path", "user@mail.example", "mail example", "-x", "[::1",
                            "::1", "smtp://user:pw@mail.example", " ", "mail.example\xC3\xA4?"}) {
        EXPECT_THROW(read_server(bad), MailRefused) << bad;
    }
}

TEST(Check, ALineEndInAnyBoxButTheMessageIsRefusedByItsName)
{
    struct Case {
        const char* box;
        std::string MailProperties::*text;
    };
    for (const auto& c :
         {Case{"SMTP Server", &MailProperties::SMTPHost}, Case{"SMTP User", &MailProperties::Username},
          Case{"SMTP Password", &MailProperties::Password}, Case{"Sender Name", &MailProperties::FromDisplayName},
          Case{"Sender Email", &MailProperties::From}, Case{"Sender Email", &MailProperties::ReplyToAddress},
          Case{"Recipient Name", &MailProperties::RecipientDisplayName},
          Case{"Recipient Email", &MailProperties::Recipient}, Case{"CC Name", &MailProperties::CcDisplayName},
          Case{"CC Email", &MailProperties::CcRecipient}, Case{"BCC Email", &MailProperties::BccRecipient},
          Case{"Subject", &MailProperties::Subject}, Case{"Attachement", &MailProperties::Attachment}}) {
        for (const std::string& end : {std::string("\r"), std::string("\n"), std::string(1, '\0')}) {
            auto mail = plain_mail("mail.example");
            (mail.*c.text) += end + "Bcc: thief@x.example";
            EXPECT_EQ(refusal_of(mail), "The text of \"" + std::string(c.box) + "\" has a line end in it.");
        }
    }
    auto mail = plain_mail("mail.example");
    mail.Message = "two\r\nlines";
    EXPECT_EQ(refusal_of(mail), "none");
}

TEST(Check, TellsAllThatIsWrongAtOnce)
{
    auto mail = plain_mail("");
    mail.From = "";
    mail.Recipient = " ";
    mail.CcRecipient = "good@x.example;bad";
    EXPECT_EQ(refusal_of(mail),
              "There is no server in \"SMTP Server\".\r\nThere is no address in \"Sender Email\".\r\n"
              "\"bad\" in \"CC Email\" is no e-mail address.\r\nThere is no address in \"Recipient Email\".");
}

TEST(Check, AddressesAreTestedBySyntax)
{
    for (const char* good : {"a@b", "first.last+tag@sub.mail.example", "o'neil@x.example", "a@[127.0.0.1]"}) {
        auto mail = plain_mail("mail.example");
        mail.Recipient = good;
        EXPECT_EQ(refusal_of(mail), "none") << good;
    }
    for (const std::string& bad : {std::string("a"), std::string("@b"), std::string("a@"), std::string("a b@c"),
                                   std::string("a@b>"), std::string("a,b@c"), std::string("a@b c"), std::string("ä@b"),
                                   std::string("a@b@c d"), "a@" + std::string(253, 'x')}) {
        auto mail = plain_mail("mail.example");
        mail.BccRecipient = bad;
        EXPECT_THAT(refusal_of(mail), HasSubstr("in \"BCC Email\" is no e-mail address.")) << bad;
    }
    auto mail = plain_mail("mail.example");
    mail.EmailAddressValidation = 0;
    mail.Recipient = "ä@b";
    EXPECT_EQ(refusal_of(mail), "none") << "the check can be turned off";
    mail.Recipient = "a@b> SIZE=1";
    EXPECT_NE(refusal_of(mail), "none") << "but no address breaks out of its command";
}

TEST(Talk, WhatAServerSaysIsBoundedAndReadable)
{
    SmtpTalk talk("anna", 10);
    talk.heard("220 \x1B[31mred\xFF\x07 \xC2\x9B" + std::string(5000, 'x') + "\r\n");
    const auto first = talk.take_lines();
    ASSERT_EQ(first.size(), 1U);
    EXPECT_THAT(first[0], ::testing::StartsWith("220  [31mred\xEF\xBF\xBD   xxx"));
    EXPECT_LT(first[0].size(), 510U);
    for (int line = 0; line < 10'000; ++line) talk.heard("250-more\r\n");
    EXPECT_LE(talk.take_lines().size(), 300U);
}

TEST(Talk, RefusalsBelongToTheCommandBefore)
{
    SmtpTalk talk("anna", 10);
    talk.heard("220 mail.test\r\n");
    talk.said("EHLO x\r\n");
    talk.heard("502 What?\r\n");
    EXPECT_NE(talk.refusal().what, "");
    talk.said("HELO x\r\n");
    talk.heard("250 Ah\r\n");
    EXPECT_EQ(talk.refusal().what, "") << "what it was not stopped by is none";
    talk.said("RCPT TO:<a@x.example>\r\n");
    talk.heard("550-5.1.1 Nobody\r\n");
    talk.heard("550 5.1.1 here\r\n");
    talk.said("RCPT TO:<b@x.example>\r\n");
    talk.heard("250 Fine\r\n");
    ASSERT_EQ(talk.refused_recipients().size(), 1U);
    EXPECT_EQ(talk.refused_recipients()[0].what, "The server refused the recipient \"a@x.example\".");
    EXPECT_EQ(talk.refused_recipients()[0].answer, "550-5.1.1 Nobody\r\n550 5.1.1 here");
    talk.said("DATA\r\n");
    talk.heard("451 Later\r\n");
    talk.said("QUIT\r\n");
    EXPECT_EQ(talk.refusal().what, "The server refused the message.");
    EXPECT_THAT(talk.take_lines(), ElementsAre("220 mail.test", "502 What?", "250 Ah", "Recipient a@x.example",
                                               "550-5.1.1 Nobody", "550 5.1.1 here", "Recipient b@x.example",
                                               "250 Fine", "Sending the message, 10 bytes", "451 Later"));
}

}  // namespace
}  // namespace velora::smtp
