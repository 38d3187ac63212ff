#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <random>
#include <regex>

#include "engine/export/export_run.h"
#include "engine/export/paint/bitmap.h"
#include "engine/export/paint/page_picture.h"
#include "engine/export/sample_pages.h"
#include "support/tool_run.h"
#include "values/fault.h"

namespace velora::engine {
namespace {

#define NEEDS_TOOL(run) \
    if ((run).status == 127) GTEST_SKIP() << (run).output

/// One picture of one red point.
std::string red_point()
{
    static constexpr unsigned char kPng[] = {
        0x89, 'P',  'N',  'G', 0x0D, 0x0A, 0x1A, 0x0A, 0,    0,    0,    13,   'I',  'H',  'D',  'R', 0, 0,
        0,    1,    0,    0,   0,    1,    8,    2,    0,    0,    0,    0x90, 0x77, 0x53, 0xDE, 0,   0, 0,
        12,   'I',  'D',  'A', 'T',  0x08, 0xD7, 0x63, 0xF8, 0xCF, 0xC0, 0,    0,    3,    1,    1,   0, 0x18,
        0xDD, 0x8D, 0xB0, 0,   0,    0,    0,    'I',  'E',  'N',  'D',  0xAE, 0x42, 0x60, 0x82};
    return {reinterpret_cast<const char*>(kPng), sizeof kPng};
}

void fill_page(SamplePages& sample)
{
    Style heading = sample.style();
    heading.font.bold = true;
    Text& title = sample.add_text({20, 20, 300, 20}, "Chapter (one)", heading);
    title.details().anchor = {"Chapter (one)", 1};
    Text& second = sample.add_text({20, 700, 300, 20}, "Part", heading);
    second.details().anchor = {"Part \xC3\xA9", 2};
    sample.add_text({20, 50, 300, 20}, "Müller \xE2\x82\xAC 1,234.50 fi-ffl", sample.style()).details().link = {
        Link::Kind::Reference, "https://example.org/?q=(1)", "", 0, ""};
    sample.add_text({320, 50, 200, 20}, "jump", sample.style()).details().link = {Link::Kind::LocalAnchor, "",
                                                                                  "Chapter (one)", 0, ""};
    Style justified = sample.style();
    justified.horizontal = HorizontalAlign::Justified;
    sample.add_text({20, 100, 100, 60}, "words that fill more than one line of the box", justified);
    Style picture = sample.style();
    picture.scale = ScaleImage::FillFrame;
    sample.add({200, 200, 50, 40}, picture, Image{std::make_shared<ImageData>(ImageData{red_point(), {}}), {}, {}});
    sample.add({200, 250, 50, 40}, picture, Image{std::make_shared<ImageData>(ImageData{"no picture", {}}), {}, {}});
}

TEST(Pdf, ForeignProgramsFindNoFault)
{
    SamplePages sample;
    fill_page(sample);
    const auto file = sample.print("checked.pdf");
    const ToolRun check = run_tool("qpdf --check " + file.string());
    NEEDS_TOOL(check);
    EXPECT_EQ(check.status, 0) << check.output;
    const ToolRun fonts = run_tool("pdffonts " + file.string());
    NEEDS_TOOL(fonts);
    EXPECT_TRUE(std::regex_search(fonts.output, std::regex("DejaVuSans-Bold +CID TrueType +Identity-H +yes yes yes")))
        << fonts.output;
    const ToolRun info = run_tool("pdfinfo -isodates " + file.string());
    for (const char* part : {"Title:           Sample \xE2\x82\xAC", "Author:          A. Writer",
                             "2026-01-31T12:30:00", "Pages:           1", "595 x 842"}) {
        EXPECT_NE(info.output.find(part), std::string::npos) << part << "\nin\n" << info.output;
    }
}

TEST(Pdf, TextComesOutAsItStoodAndWhereItStood)
{
    SamplePages sample;
    fill_page(sample);
    const auto file = sample.print("text.pdf");
    const ToolRun text = run_tool("pdftotext -raw " + file.string() + " -");
    NEEDS_TOOL(text);
    EXPECT_NE(text.output.find("Müller \xE2\x82\xAC 1,234.50 fi-ffl"), std::string::npos) << text.output;
    EXPECT_NE(text.output.find("words that fill more\nthan one line"), std::string::npos) << text.output;
    const ToolRun boxes = run_tool("pdftotext -bbox " + file.string() + " -");
    std::smatch found;
    ASSERT_TRUE(std::regex_search(boxes.output, found, std::regex("xMin=\"([0-9.]+)\" yMin=\"([0-9.]+)\"[^>]*>1,234")));
    const float before = sample.measurer.width("Müller \xE2\x82\xAC ", sample.style().font);
    EXPECT_NEAR(std::stof(found[1]), 20 + before, 0.02);
    EXPECT_NEAR(std::stof(found[2]), 50, 0.5);
}

TEST(Pdf, PicturesAreEmbeddedOnceAndDamagedOnesLeftOut)
{
    SamplePages sample;
    fill_page(sample);
    const auto file = sample.print("pictures.pdf");
    const ToolRun made = run_tool("pdftoppm -jpeg -singlefile -r 20 " + file.string() + " " +
                                  (SamplePages::scratch() / "made").string());
    NEEDS_TOOL(made);
    const auto jpeg = std::make_shared<ImageData>(ImageData{bytes_of(SamplePages::scratch() / "made.jpg"), {}});
    fill_page(sample);
    for (int x : {10, 70}) sample.add({x, 300, 50, 70}, sample.style(), Image{jpeg, {}, {}});
    const ToolRun list = run_tool("pdfimages -list " + sample.print("pictures.pdf").string());
    EXPECT_TRUE(std::regex_search(list.output, std::regex("image +1 +1 +rgb +3 +8 +image"))) << list.output;
    EXPECT_TRUE(std::regex_search(list.output, std::regex("image +166 +234 +rgb +3 +8 +jpeg"))) << list.output;
}

TEST(Pictures, DamagedFilesDoNoHarm)
{
    std::mt19937 random(11);
    const std::string jpeg = bytes_of(SamplePages::scratch() / "made.jpg");
    for (const std::string& whole : {red_point(), jpeg}) {
        for (int round = 0; round < 300 && !whole.empty(); ++round) {
            std::string bytes = whole.substr(0, round % 3 == 0 ? random() % whole.size() : whole.size());
            for (int i = 0; i < 4 && !bytes.empty(); ++i) bytes[random() % bytes.size()] = static_cast<char>(random());
            const auto bitmap = read_bitmap(bytes);
            if (!bitmap) continue;
            EXPECT_EQ(bitmap->colors.size(), size_t(bitmap->width) * size_t(bitmap->height) * 3);
        }
    }
    EXPECT_FALSE(read_bitmap(""));
    EXPECT_TRUE(read_bitmap(red_point()));
}

TEST(Pdf, BookmarksAndLinksLeadSomewhere)
{
    SamplePages sample;
    fill_page(sample);
    const ToolRun plain = run_tool("qpdf --qdf --object-streams=disable " + sample.print("links.pdf").string() + " -");
    NEEDS_TOOL(plain);
    for (const char* part : {R"(/Title (Chapter \(one\)))", R"(/URI (https://example.org/?q=\(1\)))",
                             R"(/Dest (Chapter \(one\)))", "/Subtype /Link", "/Type /Outlines"}) {
        EXPECT_NE(plain.output.find(part), std::string::npos) << part;
    }
}

TEST(Pdf, TheSameInputGivesTheSameBytes)
{
    std::string bytes[2];
    for (std::string& each : bytes) {
        SamplePages sample;
        fill_page(sample);
        each = bytes_of(sample.print("again.pdf"));
    }
    EXPECT_EQ(bytes[0], bytes[1]);
}

TEST(Pdf, ATextThatIsCutStaysInItsBox)
{
    SamplePages sample;
    sample.add_text({50, 50, 40, 12}, "one two three four five six", sample.style());
    const std::string png = page_picture(sample.document, sample.page, 72, sample.fonts);
    EXPECT_TRUE(png.starts_with("\x89PNG"));
    const auto file = SamplePages::scratch() / "cut.pdf";
    sample.print(*make_exporter("pdf", file, {sample.fonts, {}}));
    const ToolRun picture = run_tool("pdftoppm -r 72 -gray -x 45 -y 64 -W 60 -H 60 " + file.string());
    NEEDS_TOOL(picture);
    const std::string points = picture.output.substr(picture.output.find("255\n") + 4);
    EXPECT_EQ(points.size(), 3600U);
    EXPECT_EQ(points.find_first_not_of('\xFF'), std::string::npos) << "something is painted below the box";
}

TEST(Export, AFailureLeavesTheEarlierFileAsItWas)
{
    SamplePages sample;
    const auto file = SamplePages::scratch() / "kept.txt";
    {
        std::ofstream(file) << "earlier";
    }
    {
        const auto sink = make_exporter("txt", file, {sample.fonts, {}});
        sink->begin(sample.document);
        sink->page({});
    }
    EXPECT_EQ(bytes_of(file), "earlier");
    for (const auto& entry : std::filesystem::directory_iterator(SamplePages::scratch())) {
        EXPECT_NE(entry.path().extension(), ".part") << entry.path();
    }
    EXPECT_THROW(make_exporter("pdf", "/no/such/folder/file.pdf", {sample.fonts, {}}), Fault);
}

TEST(Export, AFileThatCannotGrowIsReportedByNameAndLeavesNothing)
{
    const auto target = SamplePages::scratch() / "grown.txt";
    std::filesystem::remove(target);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = before;
    small.rlim_cur = 1 << 20;
    setrlimit(RLIMIT_FSIZE, &small);
    std::string message;
    try {
        AtomicFile file(target);
        for (int i = 0; i < 64; ++i) file.write(std::string(1 << 16, 'x'));
        file.finish();
    } catch (const Fault& fault) {
        message = fault.description();
        EXPECT_EQ(fault.number(), fault::kPathAccess);
    }
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_NE(message.find("grown.txt: File too large"), std::string::npos) << message;
    EXPECT_FALSE(std::filesystem::exists(target));
}

}  // namespace
}  // namespace velora::engine
