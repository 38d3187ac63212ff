#include "engine/fill/book/page_store.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <random>

#include "page_lines.h"
#include "values/fault.h"

namespace velora::engine {
namespace {

namespace fs = std::filesystem;

const Style kStyle;

Element element(decltype(Element::content) content, Place place = {1, -2, 30, 40})
{
    return {place, &kStyle, 7, true, std::move(content)};
}

TextDetail rich_detail()
{
    TextDetail detail;
    detail.lines = {{0, 3, 11.5F, 9, 12, 1, true}, {4, 9, 5, 9, 12, 2, false}};
    detail.runs = {{1,
                    4,
                    std::make_shared<Font>(Font{"Serif", 7.5F, true, false, true, false}),
                    {1, 2, 3, 4},
                    Color{9, 8, 7, 6},
                    TextRun::Script::Sub,
                    "http://a"}};
    detail.truncate_at = 5;
    detail.line_spacing_factor = 1.25F;
    detail.leading_offset = -0.5F;
    detail.link = {Link::Kind::RemotePage, "other.pdf", "there", 3, "tip"};
    detail.anchor = {"anchor", 2};
    detail.marked = "<b>x</b>";
    detail.marked_as_html = true;
    return detail;
}

Element through_bytes(const Element& element)
{
    std::string bytes;
    PictureNumbers pictures;
    put_element(bytes, element, pictures);
    std::string_view left = bytes;
    Element back = take_element(left, pictures);
    EXPECT_TRUE(left.empty()) << "what is written is read";
    std::string_view cut = std::string_view(bytes).substr(0, bytes.size() - 1);
    EXPECT_THROW(take_element(cut, pictures), Fault);
    EXPECT_EQ(back.place, element.place);
    EXPECT_EQ(back.style, element.style);
    EXPECT_EQ(back.source, element.source);
    EXPECT_EQ(back.begins_band, element.begins_band);
    EXPECT_EQ(back.content.index(), element.content.index());
    return back;
}

TEST(ElementBytes, KeepAllThatAnElementHas)
{
    for (const Value& value : {Value(), Value(true), Value(int64_t{-5}), Value(1.5F), Value(2.25), Value(Fixed4()),
                               Value(DateTime(46188, 7)), Value("text")}) {
        TextDetail detail = rich_detail();
        detail.value = value;
        const Text text = std::get<Text>(
            through_bytes(element(Text{"a text \xc3\xa4", 11.25F, std::make_unique<TextDetail>(detail)})).content);
        EXPECT_EQ(text.text, "a text \xc3\xa4");
        EXPECT_EQ(text.text_height, 11.25F);
        ASSERT_TRUE(text.detail);
        EXPECT_EQ(*text.detail, detail);
    }
    const auto picture = std::make_shared<ImageData>(ImageData{"bytes", "logo.png", 2});
    const auto image = std::get<Image>(through_bytes(element(Image{picture, std::make_shared<Link>(rich_detail().link),
                                                                   std::make_shared<Anchor>(rich_detail().anchor)}))
                                           .content);
    EXPECT_EQ(image.data, picture) << "the picture itself, not another like it";
    EXPECT_EQ(*image.link, rich_detail().link);
    EXPECT_EQ(*image.anchor, rich_detail().anchor);
    EXPECT_EQ(std::get<Image>(through_bytes(element(Image{})).content).data, nullptr);

    Drawing drawing{20, 30, {}, "bars"};
    drawing.items = {
        Shape{{Point{1, 2}, Shape::Arc{{3, 4}, 5, 6, 7}}, true, true, {1, 1, 1}, {2, LineStyle::Dotted, {}}},
        Label{{8, 9}, "label", {"Mono", 6}, {4, 4, 4}, HorizontalAlign::Right, 0.5F}};
    const auto graphic = std::get<Graphic>(through_bytes(element(Graphic{std::make_shared<Drawing>(drawing)})).content);
    EXPECT_EQ(*graphic.drawing, drawing);
    EXPECT_EQ(graphic.drawing->description, "bars");

    Frame frame;
    frame.children.push_back(element(Line{}, {5, 6, 7, 8}));
    frame.children.push_back(element(Text{"inside", 3, nullptr}));
    const Element back = through_bytes(element(std::move(frame)));
    ASSERT_EQ(std::get<Frame>(back.content).children.size(), 2U);
    EXPECT_EQ(std::get<Frame>(back.content).children[0].place, (Place{5, 6, 7, 8}));
    EXPECT_EQ(std::get<Text>(std::get<Frame>(back.content).children[1].content).text, "inside");
}

/// A folder of its own for temporary files.
class Scratch : public ::testing::Test {
protected:
    void SetUp() override
    {
        fs::remove_all(folder_);
        fs::create_directories(folder_);
        ::setenv("TMPDIR", folder_.c_str(), 1);
    }
    void TearDown() override { ::unsetenv("TMPDIR"); }

    int number(int least, int most) { return std::uniform_int_distribution(least, most)(random_); }

    const fs::path folder_ = fs::path(VELORA_TEST_SCRATCH) / "temporary";
    std::mt19937 random_{20260612};
};

TEST_F(Scratch, BytesComeBackFromTheBufferAndFromAFileThatNobodySees)
{
    ScratchBytes bytes;
    std::vector<std::pair<uint64_t, std::string>> pieces;
    while (bytes.in_file() < 3 * ScratchBytes::kBuffer) {
        std::string piece(static_cast<size_t>(number(0, 300'000)), static_cast<char>('a' + pieces.size() % 26));
        const uint64_t at = bytes.append(piece);
        pieces.emplace_back(at, std::move(piece));
        ASSERT_TRUE(fs::is_empty(folder_)) << "the file has no name";
    }
    for (const auto& [at, piece] : pieces) ASSERT_EQ(bytes.read(at, piece.size()), piece) << at;
}

TEST_F(Scratch, AFolderThatTakesNoFileIsNamed)
{
    ::setenv("TMPDIR", "/proc", 1);
    ScratchBytes bytes;
    bytes.append(std::string(ScratchBytes::kBuffer, 'x'));
    try {
        bytes.append("one more");
        FAIL() << "no file can be made there";
    } catch (const Fault& fault) {
        EXPECT_NE(std::string(fault.what()).find("/proc"), std::string::npos) << fault.what();
    }
}

TEST_F(Scratch, PagesComeBackInAnyOrderAsTheyWereAmendedLast)
{
    PageStore store;
    std::vector<std::vector<std::string>> texts;  // of each page
    std::vector<uint32_t> amended;
    const auto lines_of = [](const std::vector<std::string>& words) {
        Page page;
        for (const auto& word : words) page.elements.push_back(element(Text{word, 10, nullptr}));
        return page_lines(page);
    };
    const auto compare = [&](size_t page) {
        ASSERT_EQ(page_lines(*store.page(page)), lines_of(texts[page])) << page;
        ASSERT_EQ(store.revision(page), amended[page]) << page;
    };
    while (texts.size() < 700) {
        Page page;
        auto& words = texts.emplace_back();
        for (int count = number(1, 9); count > 0; --count) {
            words.push_back(std::to_string(number(0, 1'000'000)) +
                            std::string(static_cast<size_t>(number(0, 900)), 'x'));
            page.elements.push_back(element(Text{words.back(), 10, nullptr}));
            if (number(0, 3) == 0) std::get<Text>(page.elements.back().content).details();  // kept as it is
        }
        store.add(std::move(page));
        amended.push_back(0);
        ASSERT_EQ(store.size(), texts.size());
        for (int times = number(0, 3); times > 0; --times) {
            const auto at = static_cast<size_t>(number(0, static_cast<int>(texts.size()) - 1));
            const auto index = static_cast<size_t>(number(0, static_cast<int>(texts[at].size()) - 1));
            texts[at][index] = "amended " + std::to_string(number(0, 1000));
            store.amend(at, static_cast<uint32_t>(index), element(Text{texts[at][index], 10, nullptr}));
            ++amended[at];
            if (number(0, 2) == 0) compare(at);
        }
        compare(static_cast<size_t>(number(0, static_cast<int>(texts.size()) - 1)));
    }
    for (size_t page = texts.size(); page-- > 0;) compare(page);
}

}  // namespace
}  // namespace velora::engine
