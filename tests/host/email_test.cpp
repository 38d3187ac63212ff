#include <gmock/gmock.h>

#include "adapters/cipher/password_cipher.h"
#include "host/program.h"
#include "support/mail_server.h"

namespace velora::testing {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::StartsWith;
using Lines = std::vector<std::string>;

class Email : public HostTest {
protected:
    /// The user's settings for mail by the server; `more` are lines of the same section.
    void set(const std::string& server, const std::string& more = {}) const
    {
        write_text(scratch("settings.ini"),
                   "[DEMOCO_Report]\nSMTP=" + server + "\nSender=Anna\nSendEmail=anna@morvane.example\n" + more);
    }
    [[nodiscard]] Ran run_here(std::vector<std::string> command) const
    {
        return run(in_company(company(), std::move(command)));
    }
    [[nodiscard]] std::string arrivals() const
    {
        fs::create_directories(scratch("arrived"));
        return scratch("arrived").string();
    }
    [[nodiscard]] std::string output() const
    {
        fs::create_directories(scratch("out"));
        return (scratch("out") / "").string();
    }
};

TEST_F(Email, ADryRunIsTheMessageAndNothingElse)
{
    set("mail.example", "CopyMe=1\nReadReceipt=1\n");
    write_text(scratch("text"), "Good morning\n");
    write_text(scratch("a.pdf"), "%PDF");
    const std::vector<std::string> command{"email",
                                           "--to",
                                           "b@x.example",
                                           "c@x.example",
                                           "--cc",
                                           "d@x.example",
                                           "--bcc",
                                           "e@x.example",
                                           "--subject",
                                           "Prices",
                                           "--body",
                                           scratch("text").string(),
                                           "--attach",
                                           scratch("a.pdf").string(),
                                           scratch("text").string(),
                                           "--dry-run"};
    const Ran first = run_here(command);
    EXPECT_EQ(first.status, 0) << first.err;
    EXPECT_EQ(first.err, "");
    EXPECT_THAT(first.out,
                AllOf(StartsWith("Date: Mon, 15 Jun 2026"), HasSubstr("From: Anna <anna@morvane.example>\r\n"),
                      HasSubstr("\r\nTo: b@x.example,\r\n c@x.example\r\nCc: d@x.example\r\nSubject: Prices\r\n"),
                      HasSubstr("\r\nDisposition-Notification-To: Anna <"), HasSubstr("\r\n\r\nGood morning\r\n"),
                      HasSubstr("filename=\"a.pdf\""), HasSubstr("filename=\"text\""), Not(HasSubstr("e@x.example"))));
    EXPECT_EQ(run_here(command).out, first.out);
}

TEST_F(Email, ADocumentGoesToTheRecipientOfItsQuoteAsTheSettingsSay)
{
    const test::MailServer server(arrivals(), {"--login", "anna", "geheim"});
    const auto cipher = key_file_cipher(scratch("Velora.key").string());
    const std::string login = "SMTPuser=anna\nSMTPpwd=" + cipher->scramble("geheim") + "\n";
    const std::vector<std::string> quote{"quote", "--number", "Q-10052", "--output", output(), "--email"};

    set(server.place(), login + "Attach=1\nCopyMe=1\n");
    const Ran sent = run_here(quote);
    EXPECT_EQ(sent.status, 0) << sent.err;
    EXPECT_THAT(sent.err, AllOf(HasSubstr("250 Kept as number 1\n"), Not(HasSubstr("geheim"))));
    EXPECT_THAT(server.mail(),
                IsSupersetOf(Lines{"login: anna", "to is: 'Geneviève Thibault' g.thibault@acieriesbeauharnois.example",
                                   "told: anna@morvane.example", "text: ''"}));
    EXPECT_THAT(server.mail(), Contains(StartsWith("attachment: 'Q-10052 - Les Aciéries Beauharnois inc..pdf' "
                                                   "application/pdf ")));

    set(server.place(), login);
    auto elsewhere = quote;
    elsewhere.insert(elsewhere.end(), {"--email-to", "b@x.example", "--email-subject", "Here it is"});
    EXPECT_EQ(run_here(elsewhere).status, 0);
    EXPECT_THAT(server.mail(2),
                AllOf(IsSupersetOf(Lines{"to is: '' b@x.example", "Subject: Here it is"}),
                      Not(Contains("told: anna@morvane.example")), Not(Contains(StartsWith("attachment: ")))));
}

TEST_F(Email, AllSlipsOfAnOrderGoAlongInOneMail)
{
    set("mail.example", "Attach=1\n");
    const Ran sent =
        run_here({"picking-slip", "--number", "Q-10052", "--no-mark", "--output", output(), "--email", "--dry-run"});
    EXPECT_EQ(sent.status, 0) << sent.err;
    const size_t recipient = sent.out.find("\r\nTo: ");
    EXPECT_NE(recipient, std::string::npos);
    EXPECT_EQ(recipient, sent.out.rfind("\r\nTo: ")) << "one mail";
    EXPECT_THAT(sent.out, AllOf(HasSubstr("filename=\"Q-10052 - Picking Slip 1.pdf\""),
                                HasSubstr("filename=\"Q-10052 - Picking Slip 2.pdf\"")));
    const Ran one_file = run_here({"picking-slip", "--number", "Q-10052", "--no-mark", "--output",
                                   scratch("slip.pdf").string(), "--email", "--dry-run"});
    EXPECT_EQ(one_file.status, 2) << "the second would be written over the first";
    EXPECT_FALSE(fs::exists(scratch("slip.pdf")));
}

TEST_F(Email, AFailureIsABoxAndTheFileStays)
{
    const test::MailServer server(arrivals(), {"--refuse", "g.thibault@acieriesbeauharnois.example"});
    set(server.place());
    const Ran failed = run_here({"quote", "--number", "Q-10052", "--output", scratch("q.pdf").string(), "--email"});
    EXPECT_EQ(failed.status, 1);
    EXPECT_THAT(messages(), AllOf(HasSubstr(R"("title":"Email Failure")"), HasSubstr("Nobody of that name here")));
    EXPECT_THAT(file_text(scratch("q.pdf")), StartsWith("%PDF"));

    const Ran nobody = run_here({"customers", "--output", scratch("c.pdf").string(), "--email"});
    EXPECT_EQ(nobody.status, 1);
    EXPECT_THAT(nobody.err, HasSubstr("There is no address in \"Recipient Email\"."));

    const Ran gone = run_here({"email", "--to", "a@x.example", "--body", scratch("none").string()});
    EXPECT_EQ(gone.status, 1);
    EXPECT_THAT(gone.err, HasSubstr(scratch("none").string()));
}

TEST_F(Email, WhatDoesNotGoTogetherIsWrongUsage)
{
    set("mail.example");
    for (const std::vector<std::string>& command : {std::vector<std::string>{"email", "--subject", "no recipient"},
                                                    {"quote", "52", "--dry-run"},
                                                    {"quote", "52", "--email", "--print"},
                                                    {"quote", "52", "--email", "--output", "-"}}) {
        EXPECT_EQ(run_here(command).status, 2) << command[1];
    }
}

TEST_F(Email, HowServersAreMetStandsInTheFolder)
{
    const test::MailServer silent(arrivals(), {"--silent-at", "greeting"});
    set(silent.place());
    const auto run_with = [&](const fs::path& folder) {
        return run(in_company(folder, {"email", "--to", "a@x.example"}));
    };
    const fs::path folder = company_copy();
    const std::string ini = file_text(folder / "velora.ini");
    write_text(folder / "velora.ini", ini + "\n[Mail]\nTimeout = 1\n");
    EXPECT_THAT(run_with(folder).err, HasSubstr("did not answer within 1 seconds"));
    for (const char* wrong : {"0", "soon", "3601"}) {
        write_text(folder / "velora.ini", ini + "\n[Mail]\nTimeout = " + wrong + "\n");
        const Ran refused = run_with(folder);
        EXPECT_EQ(refused.status, 1);
        EXPECT_THAT(refused.err, HasSubstr("The key \"Timeout\" in section [Mail]")) << wrong;
    }
}

}  // namespace
}  // namespace velora::testing
