#include "engine/picture/other_pictures.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "engine/export/paint/bitmap.h"
#include "engine/picture/bounded_process.h"
#include "engine/picture/png_file.h"
#include "values/fault.h"

namespace velora::engine {
namespace {

std::string sample(const std::string& name)
{
    std::ifstream stream(VELORA_SOURCE_DIR "/fuzz/corpus/other_picture/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Red, green, blue of the points, row by row, as exporters get them.
std::vector<int> colors_of(const std::string& png)
{
    const auto bitmap = read_bitmap(png);
    return bitmap ? std::vector<int>(bitmap->colors.begin(), bitmap->colors.end()) : std::vector<int>();
}

std::string reason_against(const std::string& bytes)
{
    try {
        (void)shown_picture_of(bytes);
    } catch (const Fault& fault) {
        return fault.what();
    }
    return "";
}

TEST(OtherPictures, EveryKindShowsItsPointsInTheirColours)
{
    const std::vector<int> points{255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255, 0, 0, 0, 10, 20, 30};
    for (const char* name : {"small.bmp", "small.tif", "small.gif"}) {
        const std::string file = sample(name);
        EXPECT_TRUE(is_other_picture(file)) << name;
        const ShownPicture shown = shown_picture_of(file);
        EXPECT_EQ(colors_of(shown.png), points) << name;
        EXPECT_EQ(shown.density, 1) << name;
    }
    EXPECT_EQ(read_bitmap(shown_picture_of(sample("small.webp")).png)->width, 1);
}

TEST(OtherPictures, DrawingsAreFineKeepTheirSizeAndLetTheGroundThrough)
{
    const ShownPicture shown = shown_picture_of(sample("drawing.svg"));
    const auto bitmap = read_bitmap(shown.png);
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->width, 40 * shown.density);
    EXPECT_EQ(bitmap->height, 20 * shown.density);
    EXPECT_GE(shown.density, 4) << "pixels to the point, for paper";
    const auto at = [&](double x, double y) {
        const auto index = static_cast<size_t>(y * bitmap->height) * static_cast<size_t>(bitmap->width) +
                           static_cast<size_t>(x * bitmap->width);
        return std::vector<int>{bitmap->colors[index * 3], bitmap->colors[index * 3 + 2], bitmap->alphas[index]};
    };
    EXPECT_EQ(at(0.25, 0.5), (std::vector<int>{255, 0, 255})) << "red";
    EXPECT_EQ(at(0.75, 0.5), (std::vector<int>{0, 255, 128})) << "blue that lets half through";
    EXPECT_EQ(at(0.99, 0.01)[2], 0) << "nothing";
}

TEST(OtherPictures, ADrawingReadsNoOtherFile)
{
    const std::filesystem::path folder(VELORA_TEST_SCRATCH);
    std::filesystem::create_directories(folder);
    const std::filesystem::path red = folder / "red.png";
    std::ofstream(red, std::ios::binary) << png_of(std::vector<uint32_t>{0xFF0000}, 1, 1);
    const std::string drawing = R"(<svg xmlns="http://www.w3.org/2000/svg" width="4" height="4"><image href="file://)" +
                                red.string() + R"(" width="4" height="4"/></svg>)";
    const auto bitmap = read_bitmap(shown_picture_of(drawing).png);
    ASSERT_TRUE(bitmap && !bitmap->alphas.empty());
    EXPECT_EQ(bitmap->alphas[bitmap->alphas.size() / 2], 0);
}

TEST(OtherPictures, DamagedOnesAndThoseOfAbsurdSizeAreRefusedWithAReason)
{
    std::string large = sample("small.bmp");
    large[20] = large[24] = '\x7F';  // eight million points across and down
    EXPECT_EQ(reason_against(large), "it has more than 32 million points");
    for (const char* name : {"small.bmp", "small.tif"}) {
        std::string cut = sample(name);
        cut.resize(cut.size() / 2 + 10);
        EXPECT_NE(reason_against(cut), "") << name;
    }
    EXPECT_EQ(reason_against("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"1e9\" height=\"1e9\"/>"),
              "it has no usable size");
    EXPECT_NE(reason_against("<svg <svg"), "");
}

TEST(OtherPictures, WhatHarmsTheReaderHarmsNothingElse)
{
    EXPECT_EQ(answer_of_process([] { return std::string(200'000, 'x'); }).size(), 200'000U);
    EXPECT_EQ(answer_of_process([]() -> std::string {
                  std::raise(SIGSEGV);
                  return "never";
              }),
              "");
    EXPECT_EQ(answer_of_process([]() -> std::string { throw std::runtime_error("lost"); }), "");
}

TEST(PngFile, ColoursAreKeptExactlyAsLongAsAPaletteHoldsThem)
{
    for (const uint32_t count : {1U, 2U, 256U}) {
        std::vector<uint32_t> points;
        for (uint32_t at = 0; at < 512; ++at) points.push_back(at % count * 0x030507);
        const auto bitmap = read_bitmap(png_of(points, 32, 16));
        ASSERT_TRUE(bitmap) << count;
        for (size_t at = 0; at < points.size(); ++at) {
            const uint32_t shown = uint32_t{bitmap->colors[at * 3]} << 16 | uint32_t{bitmap->colors[at * 3 + 1]} << 8 |
                                   bitmap->colors[at * 3 + 2];
            ASSERT_EQ(shown, points[at] & 0xFFFFFF) << count << " colours, point " << at;
        }
    }
}

TEST(PngFile, TheMostFrequentColoursStayAndRareOnesComeNear)
{
    std::vector<uint32_t> points(4000, 0x204060);
    for (uint32_t at = 0; at < 500; ++at) points[at * 8] = at << 8;  // shades of green, one point each
    const auto bitmap = read_bitmap(png_of(points, 80, 50));
    ASSERT_TRUE(bitmap);
    for (size_t at = 0; at < points.size(); ++at) {
        const int green = static_cast<int>(points[at] >> 8 & 255);
        EXPECT_NEAR(bitmap->colors[at * 3 + 1], green, at % 8 == 0 ? 2 : 0) << at;
    }
}

TEST(PngFile, PhotosAndGlassAreWrittenPointByPoint)
{
    std::vector<uint32_t> photo;
    for (uint32_t at = 0; at < 10'000; ++at) photo.push_back(at * 0x9E3779B1U >> 8);
    const auto bitmap = read_bitmap(png_of(photo, 100, 100));
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->colors[3 * 9'999 + 2], photo[9'999] & 255);
    const auto glass = read_bitmap(png_with_alpha(std::vector<uint32_t>{0x80FF0000, 0xFF00FF00}, 2, 1));
    ASSERT_TRUE(glass);
    EXPECT_EQ(std::vector<int>(glass->alphas.begin(), glass->alphas.end()), (std::vector<int>{128, 255}));
    EXPECT_EQ(std::vector<int>(glass->colors.begin(), glass->colors.end()), (std::vector<int>{255, 0, 0, 0, 255, 0}));
}

}  // namespace
}  // namespace velora::engine
