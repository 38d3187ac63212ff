#include "engine/export/export_run.h"
#include "engine/export/sample_pages.h"
#include "support/tool_run.h"

namespace velora::engine {
namespace {

/// What the rules of archives have against the file, as another program reads it.
std::string faults_of(const std::filesystem::path& file)
{
    return run_tool("/usr/bin/python3 '" VELORA_SOURCE_DIR "/tests/support/archive_check.py' " + word(file)).output;
}

std::string identity_of(const std::string& pdf)
{
    const size_t at = pdf.rfind("/ID[");
    return at == std::string::npos ? "" : pdf.substr(at, 40);
}

TEST(PdfArchive, TextsLinksAndTransparentGroundsKeepTheRules)
{
    SamplePages sample;
    Style style = sample.style();
    sample.add_text({20, 20, 200, 12},
                    "12 Harbour Road, \xC5\x81\xC3\xB3"
                    "d\xC5\xBA",
                    style);
    Text& linked = sample.add_text({20, 40, 100, 12}, "go", style);
    linked.details().link = {Link::Kind::Reference, "https://example.com", {}, 0, {}};
    style.opaque = true;
    style.back = {10, 20, 30, 128};
    sample.add({20, 60, 100, 20}, style, Rectangle{});
    EXPECT_EQ(faults_of(sample.print("archive.pdf")), "");
}

TEST(PdfArchive, WhatBreaksTheRulesDoesNotClaimToKeepThem)
{
    SamplePages sample;
    Style style = sample.style();
    sample.add_text({20, 20, 100, 12}, "a letter of nobody: \xEE\x80\x80", style);  // in no font's stock
    const std::string faults = faults_of(sample.print("unknown_letter.pdf"));
    EXPECT_NE(faults.find("it does not say that it is for archives"), std::string::npos) << faults;
    EXPECT_EQ(std::ranges::count(faults, '\n'), 1) << faults;
}

TEST(PdfArchive, TheIdentityIsThatOfTheContent)
{
    const auto identity = [](const char* text) {
        SamplePages sample;
        sample.add_text({20, 20, 100, 12}, text, sample.style());
        return identity_of(bytes_of(sample.print("identity.pdf")));
    };
    EXPECT_EQ(identity("one"), identity("one"));
    EXPECT_NE(identity("one"), identity("eno"));
    EXPECT_NE(identity("one"), "");
}

}  // namespace
}  // namespace velora::engine
