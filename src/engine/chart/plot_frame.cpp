#include "engine/chart/plot_frame.h"

#include <numbers>

namespace velora::engine {

void draw_axis_titles(ChartBoard& board, const ChartArea& plot, const ChartArea& outer, const std::string& below,
                      const std::string& beside)
{
    const Font& font = board.data.label_font;
    board.label({plot.middle_x(), outer.bottom - font.size * 0.24F}, board.fitted(below, font, plot.width()), font,
                HorizontalAlign::Center);
    board.label({outer.left + font.size * 0.93F, plot.middle_y()}, board.fitted(beside, font, plot.height()), font,
                HorizontalAlign::Center, -std::numbers::pi_v<float> / 2);
}

}  // namespace velora::engine
