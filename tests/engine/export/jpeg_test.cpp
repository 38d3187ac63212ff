#include <gtest/gtest.h>
#include <turbojpeg.h>

#include <memory>

#include "engine/export/paint/bitmap.h"
#include "engine/page/picture_head.h"

namespace velora::engine {
namespace {

/// A picture of one colour, packed in the way that its parts ask for.
std::string made_jpeg(int width, int height, TJPF parts, std::vector<uint8_t> point, TJSAMP sampling, int flags = 0)
{
    std::vector<uint8_t> points;
    for (int at = 0; at < width * height; ++at) points.insert(points.end(), point.begin(), point.end());
    const std::unique_ptr<void, int (*)(void*)> packer(tjInitCompress(), tjDestroy);
    unsigned char* packed = nullptr;
    unsigned long size = 0;
    tjCompress2(packer.get(), points.data(), width, 0, height, parts, &packed, &size, sampling, 95, flags);
    std::string bytes(reinterpret_cast<char*>(packed), size);
    tjFree(packed);
    return bytes;
}

TEST(Jpeg, EverySortIsTakenApartIntoItsColours)
{
    struct Case {
        const char* why;
        std::string bytes;
        int components;
        std::vector<int> color;
    };
    for (const auto& c : {
             Case{"colour", made_jpeg(33, 18, TJPF_RGB, {200, 100, 50}, TJSAMP_420), 3, {200, 100, 50}},
             Case{"colour in several passes",
                  made_jpeg(33, 18, TJPF_RGB, {20, 30, 250}, TJSAMP_444, TJFLAG_PROGRESSIVE),
                  3,
                  {20, 30, 250}},
             Case{"grey", made_jpeg(33, 18, TJPF_GRAY, {77}, TJSAMP_GRAY), 1, {77, 77, 77}},
             Case{"four inks, inverted",
                  made_jpeg(33, 18, TJPF_CMYK, {240, 120, 60, 128}, TJSAMP_444),
                  4,
                  {240 * 128 / 255, 120 * 128 / 255, 60 * 128 / 255}},
         }) {
        const auto head = picture_head(c.bytes);
        ASSERT_TRUE(head) << c.why;
        EXPECT_EQ(head->components, c.components) << c.why;
        const auto bitmap = read_bitmap(c.bytes);
        ASSERT_TRUE(bitmap) << c.why;
        EXPECT_EQ(bitmap->width, 33) << c.why;
        EXPECT_EQ(bitmap->height, 18) << c.why;
        ASSERT_EQ(bitmap->colors.size(), 33U * 18 * 3) << c.why;
        for (size_t at = 0; at < bitmap->colors.size(); ++at) {
            ASSERT_NEAR(bitmap->colors[at], c.color[at % 3], 4) << c.why << ' ' << at;
        }
    }
}

TEST(Jpeg, WhatIsThereOfACutFileIsShownAndAHeadAloneIsNoPicture)
{
    const std::string whole = made_jpeg(64, 64, TJPF_RGB, {200, 100, 50}, TJSAMP_444);
    const auto cut = read_bitmap(std::string_view(whole).substr(0, whole.size() - 60));
    ASSERT_TRUE(cut);
    EXPECT_EQ(cut->colors.size(), 64U * 64 * 3);
    EXPECT_NEAR(cut->colors[0], 200, 4);
    EXPECT_FALSE(read_bitmap("\xFF\xD8\xFF\xC0" + std::string("\0\x0b\x08\0\5\0\6\1\1\x11\0", 11)));
    std::string huge = whole;
    const size_t frame = huge.find("\xFF\xC0");
    ASSERT_NE(frame, std::string::npos);
    huge.replace(frame + 5, 4, 4, '\xFF');
    EXPECT_FALSE(read_bitmap(huge)) << "a size that is only claimed takes no memory";
}

}  // namespace
}  // namespace velora::engine
