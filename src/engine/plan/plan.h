#pragma once

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/definition/model.h"
#include "engine/expression/expression.h"
#include "engine/page/page.h"
#include "engine/plan/look.h"

/// A definition made ready for filling: every expression compiled, every name turned into an index.
namespace velora::engine {

inline constexpr int kNoGroup = -1;

/// Slots of the variables that every report has; those of the groups follow in order.
enum BuiltIn : size_t { kPageNumber, kColumnNumber, kReportCount, kPageCount, kColumnCount, kFirstGroupCount };

/// Variables for elements that wait for the end of the outermost report: the page there, and how many there are.
inline constexpr std::string_view kMasterPage = "MASTER_CURRENT_PAGE";
inline constexpr std::string_view kMasterPages = "MASTER_TOTAL_PAGES";

struct FieldPlan {
    std::string name;
    ValueClass value_class = ValueClass::Text;
    std::string csv_column;  ///< column to take when the table has none of the name; empty for none
    bool optional = false;   ///< the property velora.optional: some tables lack it, which is no warning
};

struct ParameterPlan {
    std::string name;
    ValueClass value_class = ValueClass::Text;
    Expression default_value;
};

/// A variable and the aggregates that it leans on, which stand before it.
struct VariablePlan {
    std::string name;
    ValueClass value_class = ValueClass::Object;
    model::Calculation calculation = model::Calculation::Nothing;
    model::Moment reset = model::Moment::Report;
    int reset_group = kNoGroup;
    model::Moment increment = model::Moment::None;
    int increment_group = kNoGroup;
    Expression expression;
    Expression initial;
    Value fixed_expression;  ///< what counts when there is no expression
    Value fixed_initial;
    size_t count = 0;   ///< slot of the count, for averages and variances
    size_t sum = 0;     ///< slot of the sum
    size_t spread = 0;  ///< slot of the variance, for standard deviations
};

struct LinkPlan {
    Link::Kind kind = Link::Kind::None;
    Expression when, reference, anchor, page, tooltip, anchor_name, level;
    int bookmark_level = 0;
};

struct ContainerPlan;
struct ChartPlan;
struct NestedPlan;

/// A property of an element that is true or false, stated by it, by an expression or by the report.
struct FlagPlan {
    bool value = false;
    Expression expression;

    [[nodiscard]] bool holds(const Environment& environment) const
    {
        return expression ? expression.text(environment) == "true" : value;
    }
};

/// One element of a band or frame.
struct PartPlan {
    enum class Kind : uint8_t {
        StaticText,
        TextField,
        Line,
        Rectangle,
        Ellipse,
        Image,
        Frame,
        Break,
        Chart,
        Barcode,
        Nested,
        Blank
    };

    Kind kind = Kind::Blank;
    const model::Element* element = nullptr;
    Expression print_when;
    Expression style_expression;
    const StylePlan* style = nullptr;
    LookKind look_kind = LookKind::Text;
    int new_group = kNoGroup;  ///< printWhenGroupChanges
    size_t stretch_group = 0;
    uint32_t source = 0;

    model::EvaluationTime evaluation = model::EvaluationTime::Now;
    int evaluation_group = kNoGroup;
    Expression expression;
    Expression pattern;
    model::TextAdjust adjust = model::TextAdjust::CutText;
    FlagPlan keep_full_text;                       ///< what is cut off stays in the print, unseen
    FlagPlan consume_space_on_overflow{true, {}};  ///< a text that goes over takes all of the room that is left
    std::unique_ptr<LinkPlan> link;
    std::unique_ptr<ContainerPlan> children;
    std::unique_ptr<ChartPlan> chart;
    std::shared_ptr<const NestedPlan> nested;
};

struct ContainerPlan {
    std::vector<PartPlan> parts;                      ///< in printing order, element groups flattened
    std::vector<std::vector<size_t>> stretch_groups;  ///< members by index; the first one holds all parts
};

enum class BandRole : uint8_t {
    Background,
    Title,
    PageHeader,
    ColumnHeader,
    GroupHeader,
    Detail,
    GroupFooter,
    ColumnFooter,
    PageFooter,
    LastPageFooter,
    Summary,
    NoData
};

struct BandPlan {
    BandRole role = BandRole::Detail;
    int group = kNoGroup;
    int height = 0;
    int break_height = 0;  ///< room that has to be left for the band to be begun
    bool present = false;  ///< false for a band that the definition does not have
    bool prevents_split = false;
    Expression print_when;
    ContainerPlan content;
};

struct GroupPlan {
    const model::Group* group = nullptr;
    Expression expression;
    std::vector<BandPlan> headers;
    std::vector<BandPlan> footers;
};

struct ReportPlan {
    std::shared_ptr<const model::Definition> definition;
    std::unique_ptr<StylePlans> styles;
    std::vector<ParameterPlan> parameters;
    std::vector<FieldPlan> fields;
    std::vector<VariablePlan> variables;
    std::vector<GroupPlan> groups;
    Expression filter;
    std::map<std::string, Expression, std::less<>> properties;  ///< of the document, worked out before the first row
    std::vector<Source> sources;

    BandPlan background, title, page_header, column_header, column_footer, page_footer, last_page_footer, summary,
        no_data;
    std::vector<BandPlan> details;

    bool shares_rows = false;            ///< a report inside it reads the same rows
    bool estimates_for_groups = false;   ///< a group's expression looks at a variable
    bool estimates_for_filter = false;   ///< the filter does
    bool estimates_for_details = false;  ///< a detail band's condition does
    std::vector<std::string> warnings;   ///< what opening met
};

}  // namespace velora::engine
