#include "engine/export/paint/canvas.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velora::engine {

void Path::arc(double x, double y, double x_radius, double y_radius, double from, double to)
{
    const int parts = std::max(1, static_cast<int>(std::ceil(std::abs(to - from) / (std::numbers::pi / 2) - 1e-9)));
    const double step = (to - from) / parts;
    const double reach = 4.0 / 3.0 * std::tan(step / 4);
    for (int i = 0; i < parts; ++i) {
        const double first = from + i * step, last = first + step;
        const double x0 = std::cos(first), y0 = std::sin(first), x1 = std::cos(last), y1 = std::sin(last);
        if (i == 0) {
            const auto verb = steps.empty() || steps.back().verb == Verb::Close ? Verb::Move : Verb::Line;
            steps.push_back({verb, {x + x0 * x_radius, y + y0 * y_radius}});
        }
        curve(x + (x0 - reach * y0) * x_radius, y + (y0 + reach * x0) * y_radius, x + (x1 + reach * y1) * x_radius,
              y + (y1 - reach * x1) * y_radius, x + x1 * x_radius, y + y1 * y_radius);
    }
}

void Path::rectangle(const Area& area)
{
    move(area.x, area.y);
    line(area.x + area.width, area.y);
    line(area.x + area.width, area.y + area.height);
    line(area.x, area.y + area.height);
    close();
}

void Path::rounded(const Area& area, double radius)
{
    const double r = std::min({radius, area.width / 2, area.height / 2});
    if (r <= 0) return rectangle(area);
    constexpr double kQuarter = std::numbers::pi / 2;
    const double left = area.x + r, right = area.x + area.width - r;
    const double top = area.y + r, bottom = area.y + area.height - r;
    arc(right, top, r, r, -kQuarter, 0);
    arc(right, bottom, r, r, 0, kQuarter);
    arc(left, bottom, r, r, kQuarter, 2 * kQuarter);
    arc(left, top, r, r, 2 * kQuarter, 3 * kQuarter);
    close();
}

void Path::ellipse(const Area& area)
{
    arc(area.x + area.width / 2, area.y + area.height / 2, area.width / 2, area.height / 2, 0, 2 * std::numbers::pi);
    close();
}

}  // namespace velora::engine
