#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "engine/definition/style.h"

/// A report definition as it was written: both written forms are read into these structures. Lengths are whole
/// points. Nothing is resolved here: names of styles, groups and variables are kept as texts, expressions as source.
namespace velora::engine::model {

struct Property {
    std::string name;
    std::string value;
    ExpressionText expression;  ///< of a propertyExpression; `value` is empty then
};
using Properties = std::vector<Property>;

/// The value of a property, none when it is not there or has an expression.
[[nodiscard]] inline std::optional<std::string_view> property_value(const Properties& properties, std::string_view name)
{
    for (const auto& property : properties) {
        if (property.name == name && !property.expression.present()) {
            return property.value;
        }
    }
    return std::nullopt;
}

// ---------------------------------------------------------------------------------------------------- data

struct Parameter {
    std::string name;
    std::string class_name = "java.lang.String";
    std::string nested_type;
    ExpressionText default_value;
    bool for_prompting = true;
    Properties properties;
    Position place;
};

struct Field {
    std::string name;
    std::string class_name = "java.lang.String";
    std::string description;
    Properties properties;
    Position place;
};

struct SortField {
    enum class By : uint8_t { Field, Variable };
    std::string name;
    By by = By::Field;
    bool descending = false;
    Position place;
};

enum class Calculation : uint8_t {
    Nothing,
    Count,
    DistinctCount,
    Sum,
    Average,
    Lowest,
    Highest,
    StandardDeviation,
    Variance,
    System,
    First
};

/// When a variable is reset or incremented. `Master` is used by reports that fill parts of a book only.
enum class Moment : uint8_t { None, Report, Page, Column, Group, Master };

struct Variable {
    std::string name;
    std::string class_name = "java.lang.String";
    Calculation calculation = Calculation::Nothing;
    Moment reset = Moment::Report;
    std::string reset_group;
    Moment increment = Moment::None;
    std::string increment_group;
    ExpressionText expression;
    ExpressionText initial_value;
    Position place;
};

struct Query {
    std::string language = "sql";
    ExpressionText text;
};

// ------------------------------------------------------------------------------------------------ elements

enum class PositionType : uint8_t { FixRelativeToTop, Float, FixRelativeToBottom };
enum class StretchType : uint8_t {
    NoStretch,
    ElementGroupHeight,
    ElementGroupBottom,
    ContainerHeight,
    ContainerBottom
};
enum class TextAdjust : uint8_t { CutText, StretchHeight, ScaleFont };
enum class EvaluationTime : uint8_t { Now, Report, Page, Column, Group, Band, Auto, Master };
enum class SplitType : uint8_t { Stretch, Prevent, Immediate };

struct Element;
struct Band;
struct Definition;

/// A parameter that a hyperlink hands on.
struct HyperlinkParameter {
    std::string name;
    std::string class_name;
    ExpressionText expression;
};

struct Hyperlink {
    std::string type = "None";  ///< None, Reference, LocalAnchor, LocalPage, RemoteAnchor, RemotePage or a custom name
    std::string target = "Self";
    ExpressionText when;
    ExpressionText reference;
    ExpressionText anchor;
    ExpressionText page;
    ExpressionText tooltip;
    ExpressionText anchor_name;  ///< the anchor that this element sets
    ExpressionText bookmark_level_expression;
    int bookmark_level = 0;  ///< 0 sets no bookmark
    std::vector<HyperlinkParameter> parameters;

    [[nodiscard]] bool used() const { return type != "None" || anchor_name.present(); }
};

struct StaticText {
    std::string text;
};

struct TextField {
    ExpressionText expression;
    ExpressionText pattern;  ///< wins over the pattern of the style
    EvaluationTime evaluation = EvaluationTime::Now;
    std::string evaluation_group;
    TextAdjust adjust = TextAdjust::CutText;
    Hyperlink link;
};

struct Line {
    bool bottom_up = false;
};
struct Rectangle {};
struct Ellipse {};

struct Image {
    enum class OnError : uint8_t { Error, Blank, Icon };
    ExpressionText expression;
    EvaluationTime evaluation = EvaluationTime::Now;
    std::string evaluation_group;
    OnError on_error = OnError::Error;
    bool lazy = false;
    Hyperlink link;
};

struct Frame {
    std::vector<Element> children;
    bool border_splits = false;  ///< each part of a frame that goes over pages has its own top and bottom border
};

struct ElementGroup {
    std::vector<Element> children;
};

struct Break {
    enum class Type : uint8_t { Page, Column };
    Type type = Type::Page;
};

/// A variable of a report inside the report that is handed to one around it.
struct ReturnValue {
    std::string from_variable;
    std::string to_variable;
    Calculation calculation = Calculation::Nothing;
    ExpressionText from;  ///< instead of a variable
    Position place;
};

/// Where the values of a chart, list or table come from.
struct DatasetRun {
    std::string dataset;  ///< name of a sub-dataset; empty when the report's own rows feed it
    std::vector<std::pair<std::string, ExpressionText>> parameters;
    ExpressionText source;
    ExpressionText connection;
    std::vector<ReturnValue> returns;
};

struct ChartSeries {
    ExpressionText series;
    ExpressionText category;  ///< key of a pie slice, x of an xy series
    ExpressionText value;
    ExpressionText label;
    bool in_order = true;  ///< points of an xy series are joined by their x, not as they come
};

/// What a point of a time series stands for; later rows of the same period take its place.
enum class TimePeriod : uint8_t { Year, Quarter, Month, Week, Day, Hour, Minute, Second, Millisecond };

struct DataRange {
    ExpressionText low, high;
};

/// The plot of a dial or a tube.
struct Gauge {
    struct Interval {
        std::string label;
        std::optional<Color> color;
        float alpha = 1;
        DataRange range;
    };
    DataRange range;
    std::vector<Interval> intervals;
    std::string units;
    std::string value_pattern;
    std::optional<float> tick_interval;
    int angle = 180;  ///< of a dial, in degrees
    std::optional<Color> face, needle, ticks, value_color;
};

enum class LegendPosition : uint8_t { Bottom, Top, Left, Right };

struct Chart {
    /// The name of the form as written, drawn or not: pie, pie3D, bar, stackedBar, line, area, stackedArea, gantt, …
    std::string type;
    ExpressionText title;
    ExpressionText subtitle;
    std::optional<Color> title_color;
    std::optional<Color> subtitle_color;
    std::optional<Color> legend_color;
    FontAttributes title_font;
    FontAttributes subtitle_font;
    FontAttributes legend_font;
    LegendPosition legend_position = LegendPosition::Bottom;
    std::optional<bool> show_legend;
    bool show_labels = false;  ///< of the plot
    bool show_values = false;  ///< item labels
    bool horizontal = false;
    std::vector<Color> colors;  ///< series colours in order
    std::string label_format;   ///< of pie labels
    ExpressionText category_axis_label;
    ExpressionText value_axis_label;
    std::string value_axis_pattern;
    std::string category_axis_pattern;
    ExpressionText value_axis_least, value_axis_most;
    ExpressionText category_axis_least, category_axis_most;
    bool show_lines = true, show_shapes = true;
    TimePeriod period = TimePeriod::Day;
    Gauge gauge;
    EvaluationTime evaluation = EvaluationTime::Now;
    std::string evaluation_group;
    Moment reset = Moment::Report;
    std::string reset_group;
    Moment increment = Moment::None;
    std::string increment_group;
    ExpressionText increment_when;
    std::optional<DatasetRun> run;
    std::vector<ChartSeries> series;
    Hyperlink link;
};

struct Subreport {
    ExpressionText expression;  ///< path of the definition
    ExpressionText parameters_map;
    ExpressionText connection;
    ExpressionText source;
    std::vector<std::pair<std::string, ExpressionText>> parameters;
    std::vector<ReturnValue> returns;
    bool run_to_bottom = false;
};

struct ListComponent {
    DatasetRun run;
    bool horizontal = false;
    bool ignore_width = false;
    int content_height = 0;
    int content_width = 0;
    std::vector<Element> contents;
};

struct TableCell {
    int height = 0;
    int row_span = 1;
    int column_span = 1;
    std::string style;
    BoxAttributes box;
    std::vector<Element> contents;
};

struct TableColumn {
    int width = 0;
    ExpressionText print_when;
    std::optional<TableCell> table_header;
    std::optional<TableCell> table_footer;
    std::optional<TableCell> column_header;
    std::optional<TableCell> column_footer;
    std::optional<TableCell> detail;
    std::vector<TableColumn> columns;  ///< of a column group
};

struct TableComponent {
    DatasetRun run;
    bool heads_without_rows = false;  ///< of no rows, all but the detail is printed
    std::vector<TableColumn> columns;
};

enum class ErrorCorrection : uint8_t { L, M, Q, H };

struct Barcode {
    std::string type;  ///< the name as written, drawn or not: Code128, EAN13, EAN8, QRCode, …
    ExpressionText code;
    EvaluationTime evaluation = EvaluationTime::Now;
    std::string evaluation_group;
    bool show_text = true;
    double module_width = 0;  ///< points, 0 for the default
    ErrorCorrection error_correction = ErrorCorrection::L;
};

/// A kind of element that the engine does not draw; its box is kept and stays empty.
struct UnknownElement {
    std::string kind;
};

using ElementBody = std::variant<StaticText, TextField, Line, Rectangle, Ellipse, Image, Frame, ElementGroup, Break,
                                 Chart, Subreport, ListComponent, TableComponent, Barcode, UnknownElement>;

struct Element {
    std::string uuid;
    std::string key;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    std::string style;           ///< name of a style, empty for the default style
    StyleAttributes attributes;  ///< the element's own, over those of the style
    PositionType position = PositionType::FixRelativeToTop;
    StretchType stretch = StretchType::NoStretch;
    bool print_repeated_values = true;
    bool remove_line_when_blank = false;
    bool print_in_first_whole_band = false;
    bool print_when_detail_overflows = false;
    std::string print_when_group_changes;
    ExpressionText print_when;
    ExpressionText style_expression;
    Properties properties;
    Position place;
    ElementBody body;
};

// --------------------------------------------------------------------------------------------------- bands

struct Band {
    int height = 0;
    SplitType split = SplitType::Stretch;
    ExpressionText print_when;
    std::vector<Element> elements;
    Properties properties;
    Position place;
};

enum class FooterPosition : uint8_t { Normal, StackAtBottom, ForceAtBottom, CollateAtBottom };

struct Group {
    std::string name;
    ExpressionText expression;
    std::vector<Band> headers;
    std::vector<Band> footers;
    bool start_new_page = false;
    bool start_new_column = false;
    bool reset_page_number = false;
    bool reprint_header_on_each_page = false;
    bool reprint_header_on_each_column = false;
    bool keep_together = false;
    bool prevent_orphan_footer = false;
    int min_height_to_start_new_page = 0;
    int min_details_to_start_from_top = 0;
    FooterPosition footer_position = FooterPosition::Normal;
    Position place;
};

/// What stands for a text that the resource bundle lacks. Error: nothing does, the report ends there.
enum class MissingResource : uint8_t { Null, Empty, Key, Error };

/// Query, fields and variables of the report itself or of a sub-dataset.
struct Dataset {
    std::string name;
    Query query;
    std::vector<Parameter> parameters;
    std::vector<Field> fields;
    std::vector<SortField> sort_fields;
    std::vector<Variable> variables;
    std::vector<Group> groups;  ///< of a sub-dataset without bands
    ExpressionText filter;
    std::string resource_bundle;
    MissingResource when_resource_missing = MissingResource::Null;
    Properties properties;
    Position place;
};

// --------------------------------------------------------------------------------------------- the report

enum class Orientation : uint8_t { Portrait, Landscape };
enum class PrintOrder : uint8_t { Vertical, Horizontal };
enum class WhenNoData : uint8_t { NoPages, BlankPage, AllSectionsNoDetail, NoDataSection };

struct PageLayout {
    int width = 595;
    int height = 842;
    int left = 20;
    int right = 20;
    int top = 30;
    int bottom = 30;
    int column_count = 1;
    int column_width = 555;
    int column_spacing = 0;
    Orientation orientation = Orientation::Portrait;
    PrintOrder order = PrintOrder::Vertical;
    bool right_to_left = false;
};

struct Definition {
    std::string name;
    std::string path;    ///< of the file, empty when it was read from memory
    std::string folder;  ///< images, templates and subreports are looked up here
    PageLayout page;
    std::optional<WhenNoData> when_no_data;  ///< none: no pages
    bool title_new_page = false;
    bool summary_new_page = false;
    bool summary_with_page_header_and_footer = false;
    bool float_column_footer = false;
    bool ignore_pagination = false;

    std::vector<Style> styles;
    std::vector<ExpressionText> templates;
    Dataset data;  ///< the report's own: query, parameters, fields, sort fields, variables, filter, properties
    std::vector<Dataset> datasets;
    std::vector<Group> groups;

    std::optional<Band> background;
    std::optional<Band> title;
    std::optional<Band> page_header;
    std::optional<Band> column_header;
    std::vector<Band> details;
    std::optional<Band> column_footer;
    std::optional<Band> page_footer;
    std::optional<Band> last_page_footer;
    std::optional<Band> summary;
    std::optional<Band> no_data;
};

}  // namespace velora::engine::model
