#pragma once

#include <memory>

#include "engine/chart/chart_data.h"
#include "engine/page/drawing.h"

namespace velora::engine {

class Measurer;

/// Draws the chart for a box of the given size in points. Data without any value give title, legend and empty axes;
/// what is no finite number counts as a gap.
std::shared_ptr<const Drawing> draw_chart(const ChartData& data, float width, float height, Measurer& measurer);

}  // namespace velora::engine
