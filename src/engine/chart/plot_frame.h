#pragma once

#include "engine/chart/board.h"

namespace velora::engine {

/// What plots with axes have in common: the length of a mark, from a mark to its text, the pens.
inline constexpr float kTick = 3, kTextGap = 3;
inline constexpr Pen kGrid{0.5F, LineStyle::Solid, kGridColor};
inline constexpr Pen kAxis{0.75F, LineStyle::Solid, kAxisColor};

/// Writes the titles of the axes.
/// @param plot  between the axes
/// @param outer  with everything that belongs to the axes
void draw_axis_titles(ChartBoard& board, const ChartArea& plot, const ChartArea& outer, const std::string& below,
                      const std::string& beside);

}  // namespace velora::engine
