#pragma once

#include <vector>

#include "engine/definition/model.h"
#include "engine/definition/tag.h"

/// The parts of a definition that several files of the reader need.
namespace velora::engine {

std::span<const AttributeRule<model::StyleAttributes>> style_rules();
std::span<const AttributeRule<model::FontAttributes>> font_rules();
/// Box, pen, paragraph and what the classic form wraps text and line attributes in. False for other children.
bool read_style_child(model::StyleAttributes& target, Tag& child);
void read_box(model::BoxAttributes& target, Tag& tag);
void read_font(model::FontAttributes& target, Tag& tag);
model::Style read_style(Tag& tag);

/// A property or a property expression. False for other children.
bool read_property(model::Properties& target, Tag& child);

std::span<const AttributeRule<model::Hyperlink>> link_rules();
bool read_link_child(model::Hyperlink& target, Tag& child);

model::DatasetRun read_dataset_run(Tag& tag);
model::ReturnValue read_return_value(Tag& tag);
/// Parameters, fields, variables, query and the like. False for other children.
bool read_data_child(model::Dataset& target, Tag& child);
model::Dataset read_dataset(Tag& tag);

/// Appends the element that the child is, in either form. False when it is no element.
bool read_element_child(std::vector<model::Element>& target, Tag& child);
model::Band read_band(Tag& tag);

/// The kind of chart that a classic element name or a `chartType` means; empty when it is none.
std::string chart_type(std::string_view written);
std::span<const AttributeRule<model::Chart>> chart_rules();
bool read_chart_child(model::Chart& target, Tag& child);

/// A list, table or barcode; an `UnknownElement` for other components.
model::ElementBody read_component(Tag& tag);

inline constexpr auto kMissingResources =
    std::to_array<Choice<model::MissingResource>>({{"Null", model::MissingResource::Null},
                                                   {"Empty", model::MissingResource::Empty},
                                                   {"Key", model::MissingResource::Key},
                                                   {"Error", model::MissingResource::Error}});

inline constexpr auto kEvaluationTimes =
    std::to_array<Choice<model::EvaluationTime>>({{"Now", model::EvaluationTime::Now},
                                                  {"Report", model::EvaluationTime::Report},
                                                  {"Page", model::EvaluationTime::Page},
                                                  {"Column", model::EvaluationTime::Column},
                                                  {"Group", model::EvaluationTime::Group},
                                                  {"Band", model::EvaluationTime::Band},
                                                  {"Auto", model::EvaluationTime::Auto},
                                                  {"Master", model::EvaluationTime::Master}});

inline constexpr auto kMoments = std::to_array<Choice<model::Moment>>({{"None", model::Moment::None},
                                                                       {"Report", model::Moment::Report},
                                                                       {"Page", model::Moment::Page},
                                                                       {"Column", model::Moment::Column},
                                                                       {"Group", model::Moment::Group},
                                                                       {"Master", model::Moment::Master}});

inline constexpr auto kCalculations =
    std::to_array<Choice<model::Calculation>>({{"Nothing", model::Calculation::Nothing},
                                               {"Count", model::Calculation::Count},
                                               {"DistinctCount", model::Calculation::DistinctCount},
                                               {"Sum", model::Calculation::Sum},
                                               {"Average", model::Calculation::Average},
                                               {"Lowest", model::Calculation::Lowest},
                                               {"Highest", model::Calculation::Highest},
                                               {"StandardDeviation", model::Calculation::StandardDeviation},
                                               {"Variance", model::Calculation::Variance},
                                               {"System", model::Calculation::System},
                                               {"First", model::Calculation::First}});

}  // namespace velora::engine
