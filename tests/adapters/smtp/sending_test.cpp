#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "adapters/scratch.h"
#include "adapters/smtp/mail_events.h"
#include "support/mail_server.h"

namespace velora::test {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::StartsWith;
using Lines = std::vector<std::string>;

class Sending : public ::testing::Test {
protected:
    ToldEvents send(const MailProperties& mail, const MailServerRules& rules = {})
    {
        ToldEvents events;
        smtp_mail_transport(day_, rules)->Send(mail, events);
        EXPECT_EQ(events.ends, 1) << "one end, whatever happens";
        return events;
    }
    /// A certificate of the servers of this test, which is its own authority.
    std::string certificate()
    {
        const std::string file = scratch_.path("certificate");
        EXPECT_TRUE(make_certificate(file));
        return file;
    }
    static MailProperties with_login(MailProperties mail, const char* password = "geheim")
    {
        mail.UseAuthentication = true;
        mail.Username = "anna";
        mail.Password = password;
        return mail;
    }

    Scratch scratch_;
    FixedDay day_;
    std::string folder_ = scratch_.path("");
    MailServerRules impatient_{{}, std::chrono::seconds(1)};
};

TEST_F(Sending, EachStepIsToldWithTheServersAnswers)
{
    const MailServer server(folder_);
    const auto events = send(plain_mail(server.place()));
    EXPECT_EQ(events.end, "sent");
    ASSERT_THAT(events.lines, Not(IsEmpty()));
    EXPECT_EQ(events.lines.front(), "Connecting to " + server.place());
    EXPECT_THAT(events.lines, IsSupersetOf(Lines{"Sender sales@morvane.example", "Recipient buyer@acme.example",
                                                 "250 Well known", "250 Kept as number 1"}));
    EXPECT_THAT(events.lines[1], StartsWith("220 mail.test"));
}

TEST_F(Sending, ProgressIsWholePercentsThatRiseToAllOfIt)
{
    const MailServer server(folder_);
    auto mail = plain_mail(server.place());
    mail.Attachment = scratch_.write("big.pdf", std::string(3'000'000, 'b'));
    const auto events = send(mail);
    EXPECT_EQ(events.end, "sent");
    ASSERT_GT(events.percents.size(), 40U);
    EXPECT_EQ(events.percents.front(), 0);
    EXPECT_EQ(events.percents.back(), 100);
    EXPECT_TRUE(std::is_sorted(events.percents.begin(), events.percents.end(), std::less_equal<>()));
}

TEST_F(Sending, ARefusedRecipientDoesNotKeepTheMailFromTheOthers)
{
    const MailServer server(folder_, {"--refuse", "b@x.example", "--refuse", "c@x.example"});
    auto mail = plain_mail(server.place());
    mail.Recipient = "b@x.example;a@x.example;c@x.example";
    EXPECT_EQ(send(mail).end,
              "The server refused the recipient \"b@x.example\".\r\nThe server said: 550 5.1.1 Nobody of that name here"
              "\r\nThe server refused the recipient \"c@x.example\".\r\nThe server said: 550 5.1.1 Nobody of that name "
              "here\r\nThe mail went to the other recipients.");
    EXPECT_THAT(server.mail(), AllOf(Contains("told: a@x.example"), Not(Contains("told: b@x.example"))));

    mail.Recipient = "b@x.example";
    EXPECT_EQ(
        send(mail).end,
        "The server refused the recipient \"b@x.example\".\r\nThe server said: 550 5.1.1 Nobody of that name here");
    EXPECT_THAT(server.mail(2), IsEmpty());
}

TEST_F(Sending, WhatTheServerRefusesIsToldInItsWords)
{
    const MailServer server(folder_, {"--refuse-message"});
    EXPECT_EQ(send(plain_mail(server.place())).end,
              "The server refused the message.\r\nThe server said: 554 5.7.1 No such mail");
}

TEST_F(Sending, ALoginGoesOutInTheOpenOnThisMachineOnly)
{
    const MailServer here(folder_, {"--login", "anna", "geheim"});
    for (const std::string& place : {here.place(), "localhost:" + std::to_string(here.port())}) {
        EXPECT_EQ(send(with_login(plain_mail(place))).end, "sent") << place;
    }
    EXPECT_THAT(here.mail(), IsSupersetOf(Lines{"login: anna", "tls: no"}));
    const auto refused = send(with_login(plain_mail(here.place()), "wrong"));
    EXPECT_THAT(refused.end, StartsWith("The server refused the login of \"anna\".\r\nThe server said: 535 "));
    EXPECT_THAT(refused.lines, Not(Contains(HasSubstr("wrong"))));

    const MailServer there(folder_, {"--login", "anna", "geheim", "--address", "outside"});
    if (there.address() == "none") GTEST_SKIP() << "this machine has no address but loopback";
    const auto events = send(with_login(plain_mail(there.place())));
    EXPECT_EQ(events.end,
              "The server " + there.place() +
                  " does not secure the connection (STARTTLS), and a user name is never sent without that.");
    EXPECT_THAT(events.lines, Not(Contains(HasSubstr("anna"))));
}

TEST_F(Sending, TheConnectionIsSecuredWhereverThatIsOffered)
{
    const std::string file = certificate();
    for (const char* way : {"--starttls", "--smtps"}) {
        const MailServer server(folder_, {way, "--certificate", file, "--login", "anna", "geheim"});
        const std::string scheme = way == std::string("--smtps") ? "smtps://" : "";
        auto mail = with_login(plain_mail(scheme + server.place()));
        EXPECT_EQ(send(mail, {file, std::chrono::seconds(30)}).end, "sent") << way;
        EXPECT_THAT(server.mail(), IsSupersetOf(Lines{"tls: yes", "login: anna"})) << way;
    }
}

TEST_F(Sending, ACertificateThatIsNotTrustedEndsTheSend)
{
    const std::string file = certificate();
    for (const char* way : {"--starttls", "--smtps"}) {
        const MailServer server(folder_, {way, "--certificate", file});
        const std::string scheme = way == std::string("--smtps") ? "smtps://" : "";
        EXPECT_THAT(send(plain_mail(scheme + server.place())).end,
                    AllOf(StartsWith("The certificate of the server " + server.place() + " is not trusted: "),
                          HasSubstr("CertificateAuthority")))
            << way;
        const std::string other_name = "localhost:" + std::to_string(server.port());
        EXPECT_THAT(send(plain_mail(scheme + other_name), {file, std::chrono::seconds(30)}).end,
                    StartsWith("The certificate of the server " + other_name + " is not trusted: "))
            << "a certificate of another name";
        EXPECT_THAT(send(plain_mail(scheme + server.place()), {scratch_.path("none"), std::chrono::seconds(30)}).end,
                    StartsWith("The certificates in \"" + scratch_.path("none") + "\" cannot be read."));
        EXPECT_THAT(server.mail(), IsEmpty());
    }
}

TEST_F(Sending, AServerThatIsSilentEndsInAFailureAfterItsTime)
{
    for (const char* step : {"greeting", "recipient", "message"}) {
        const MailServer server(folder_, {"--silent-at", step});
        EXPECT_EQ(send(plain_mail(server.place()), impatient_).end,
                  "The server " + server.place() + " did not answer within 1 seconds.")
            << step;
    }
    const MailServer server(folder_, {"--silent-at", "good-bye"});
    EXPECT_EQ(send(plain_mail(server.place())).end, "sent") << "the mail is through";
}

TEST_F(Sending, ALostConnectionSaysWhetherTheMailMayHaveArrived)
{
    for (const char* step : {"greeting", "recipient", "message"}) {
        const MailServer server(folder_, {"--drop-at", step});
        const auto end = send(plain_mail(server.place())).end;
        EXPECT_THAT(end, StartsWith("The connection to " + server.place() + " broke: ")) << step;
        EXPECT_EQ(end.find("is not known") != std::string::npos, step == std::string("message")) << end;
    }
    int port = 0;
    {
        const MailServer server(folder_);
        port = server.port();
    }
    EXPECT_THAT(send(plain_mail("127.0.0.1:" + std::to_string(port))).end,
                StartsWith("The server 127.0.0.1:" + std::to_string(port) + " cannot be reached: "));
}

TEST_F(Sending, ACancelEndsItWithoutAnEvent)
{
    const MailServer server(folder_, {"--silent-at", "recipient"});
    ToldEvents events;
    int asked = 0;
    events.cancel = [&] { return ++asked > 5; };
    smtp_mail_transport(day_, {})->Send(plain_mail(server.place()), events);
    EXPECT_EQ(events.end, "no end");
    EXPECT_EQ(asked, 6) << "asked while it waits, and not after the yes";
}

TEST_F(Sending, AFaultOfTheWindowsReachesTheCaller)
{
    const MailServer server(folder_);
    ToldEvents events;
    events.cancel = []() -> bool { throw std::runtime_error("window"); };
    EXPECT_THROW(smtp_mail_transport(day_, {})->Send(plain_mail(server.place()), events), std::runtime_error);
}

}  // namespace
}  // namespace velora::test
