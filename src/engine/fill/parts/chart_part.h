#pragma once

#include "engine/chart/chart.h"
#include "engine/fill/parts/links.h"
#include "engine/fill/parts/part.h"
#include "engine/plan/chart_plan.h"

namespace velora::engine {

/// The data of a chart, taken from the report's rows. A value that comes again for the same series and category takes
/// the place of the one before.
class ChartFeed {
public:
    explicit ChartFeed(const ChartPlan& plan);

    /// Takes the row that has just been counted.
    void count(const Environment& now);
    /// A part of the report begins: what is counted per part is added, what is reset there begins anew.
    void begin(model::Moment part, const std::vector<bool>& group_changed);
    /// The report ends: what still waits for the end of its part is added.
    void finish() { take_waiting(); }

    [[nodiscard]] ChartData data(const Environment& environment, const Style& style) const;

private:
    struct Point {
        std::string series, category;
        std::optional<double> value;
        std::optional<double> x{};  ///< of an xy chart, instead of a category
    };

    [[nodiscard]] Point point_of(const SeriesPlan& series, const Environment& now) const;
    void add(const Point& point);
    void add_to(ChartSeries& series, const Point& point);
    void take_waiting();
    void describe(ChartData& data, const Environment& environment, const Style& style) const;
    void describe_axes(ChartData& data, const Environment& environment) const;
    void describe_gauge(ChartData& data, const Environment& environment) const;
    void sort_points(ChartData& data) const;

    const ChartPlan& plan_;
    ChartKind kind_;
    std::vector<Point> row_;  ///< of the last row, to be added when its time comes
    std::vector<std::string> categories_;
    std::vector<ChartSeries> series_;
    std::map<std::string, size_t, std::less<>> category_index_, series_index_;
    std::optional<double> value_;  ///< of a gauge
};

/// A chart, drawn when its data are complete.
class ChartPart : public Part {
public:
    ChartPart(Run& run, const PartPlan& plan, const BandState& band);

    void evaluate(Moment moment) override;
    bool prepare(int available, bool continuing) override { return prepare_fixed(available, continuing); }
    void emit(Emission& emission) override;
    void resolve(Waiting& waiting, Element& element, Moment moment) override;

private:
    [[nodiscard]] std::shared_ptr<const Drawing> drawn(Moment moment, const Place& place);

    std::shared_ptr<ChartFeed> feed_;
    Moment moment_ = Moment::Now;
};

}  // namespace velora::engine
