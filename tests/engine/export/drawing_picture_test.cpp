#include "engine/export/paint/drawing_picture.h"

#include <gtest/gtest.h>

#include "engine/text/font_store.h"

namespace velora::engine {
namespace {

Drawing words(bool bold, float size)
{
    Drawing drawing{120, 30, {}};
    Label label{{5, 20}, "Gatsby & Hamburg", {}};
    label.font.bold = bold;
    label.font.size = size;
    drawing.items.emplace_back(label);
    return drawing;
}

// A process that writes many documents opens and closes font files again and again. What cairo remembers of one that
// is closed must not show in another that takes its place in memory.
TEST(DrawingPictures, LettersAreThoseOfTheirFontHoweverManyDocumentsWereWritten)
{
    FontStore fonts(std::filesystem::path(VELORA_SOURCE_DIR) / "fonts");
    const auto painted = [&](bool bold, float size) {
        return DrawingPictures(fonts).picture(words(bold, size), {})->bytes;
    };
    const std::string plain = painted(false, 12), bold = painted(true, 12);
    EXPECT_NE(plain, bold);
    for (int round = 0; round < 20; ++round) {
        EXPECT_EQ(painted(false, 12), plain) << round;
        EXPECT_EQ(painted(true, 12), bold) << round;
    }
}

}  // namespace
}  // namespace velora::engine
