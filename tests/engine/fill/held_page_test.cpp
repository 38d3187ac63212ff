#include "engine/fill/book/held_page.h"

#include <gtest/gtest.h>

#include <random>

#include "page_lines.h"

namespace velora::engine {
namespace {

/// Pages that repeat each other's elements here and there, as those of a report do.
class MadePages {
public:
    Page next()
    {
        if (page_.empty() || chance(5)) page_.resize(number(0, 12));
        Page page;
        for (auto& [kind, text, place] : page_) {
            if (chance(3)) place = {number(-3, 500), number(0, 900), number(0, 70000), number(0, 300)};
            if (chance(3)) kind = number(0, 6);
            if (chance(2)) text = text.substr(0, number(0, 20)) + std::string(number(0, 20), 'a');
            if (chance(10)) text.append(static_cast<size_t>(number(100, 300)), 'x');
            page.elements.push_back(element(kind, text, place));
        }
        return page;
    }
    std::vector<uint32_t> some_of(size_t count)
    {
        std::vector<uint32_t> some;
        for (uint32_t index = 0; index < count; ++index) {
            if (chance(4)) some.push_back(index);
        }
        return some;
    }

private:
    struct Template {
        int kind = 0;
        std::string text;
        Place place;
    };

    int number(int least, int most) { return std::uniform_int_distribution(least, most)(random_); }
    bool chance(int of) { return number(1, of) == 1; }

    Element element(int kind, const std::string& text, const Place& place)
    {
        Element made;
        made.place = place;
        made.style = &styles_[static_cast<size_t>(place.x & 1)];
        made.source = static_cast<uint32_t>(place.y);
        Text content;
        content.text = text;
        content.text_height = static_cast<float>(place.height) / 4;
        switch (kind) {
            case 1:
                made.content = Line{};
                break;
            case 2:
                made.content = Rectangle{};
                break;
            case 3:
                made.content = Ellipse{};
                break;
            case 4:
                made.content = Frame{};
                std::get<Frame>(made.content).children.push_back(element(0, text, place));
                break;
            case 5:
                content.details().anchor = {"anchor", 2};
                made.content = std::move(content);
                break;
            default:
                made.content = std::move(content);
        }
        return made;
    }

    std::mt19937 random_{20260611};
    std::array<Style, 2> styles_{Style{}, [] {
                                     Style bold;
                                     bold.font.bold = true;
                                     return bold;
                                 }()};
    std::vector<Template> page_;
};

TEST(HeldPages, ComeBackAsTheyWere)
{
    MadePages made;
    MadePages same;
    PagePacker packer;
    PageUnpacker unpacker;
    for (int number = 0; number < 400; ++number) {
        Page page = made.next();
        const Page expected = same.next();
        const auto open = made.some_of(page.elements.size());
        same.some_of(page.elements.size());
        PackedPage packed = packer.pack(std::move(page), open);
        for (size_t at = 0; at < open.size(); ++at) {
            ASSERT_EQ(packed.kept.at(at).place, expected.elements.at(open[at]).place) << "the open ones come first";
        }
        const Page back = unpacker.unpack(std::move(packed));
        ASSERT_EQ(back.elements.size(), expected.elements.size()) << number;
        for (size_t at = 0; at < back.elements.size(); ++at) {
            ASSERT_EQ(back.elements[at].source, expected.elements[at].source) << number;
        }
        ASSERT_EQ(page_lines(back), page_lines(expected)) << number;
    }
}

TEST(HeldPages, AreSmallWhereTheyRepeatThePageBefore)
{
    const auto page = [](const std::string& text) {
        Page made;
        for (int row = 0; row < 50; ++row) {
            Element& element = made.elements.emplace_back();
            element.place = {10, row * 12, 100, 12};
            element.content = Text{text + std::to_string(row), 11.6F, nullptr};
        }
        return made;
    };
    PagePacker packer;
    packer.pack(page("the text of page 1, row "), {});
    const PackedPage second = packer.pack(page("the text of page 2, row "), {});
    EXPECT_LE(second.bytes.size(), 50 * (8 + 3)) << "a byte for the lengths, and what differs";
    EXPECT_EQ(second.kept.size(), 0U);
}

}  // namespace
}  // namespace velora::engine
