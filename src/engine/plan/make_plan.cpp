#include "engine/plan/make_plan.h"

#include <algorithm>

#include "engine/barcode/barcode.h"
#include "engine/definition/warning.h"
#include "engine/plan/chart_plan.h"
#include "engine/plan/nested_plan.h"
#include "engine/plan/plan_names.h"

namespace velora::engine {

using model::EvaluationTime;
using model::SplitType;

namespace {

constexpr std::string_view kKeepFullText = "net.sf.jasperreports.print.keep.full.text";
constexpr std::string_view kAccessibilityTag = "net.sf.jasperreports.export.accessibility.tag";
constexpr std::string_view kHeadingTag = "net.sf.jasperreports.export.pdf.tag.h";
constexpr std::string_view kConsumeSpace = "net.sf.jasperreports.consume.space.on.overflow";

struct RoleName {
    BandRole role;
    const char* name;
};
// clang-format off
constexpr RoleName kRoleNames[] = {
    {BandRole::Background,     "background"},  {BandRole::Title,        "title"},
    {BandRole::PageHeader,     "pageHeader"},  {BandRole::ColumnHeader, "columnHeader"},
    {BandRole::GroupHeader,    "groupHeader"}, {BandRole::Detail,       "detail"},
    {BandRole::GroupFooter,    "groupFooter"}, {BandRole::ColumnFooter, "columnFooter"},
    {BandRole::PageFooter,     "pageFooter"},  {BandRole::LastPageFooter, "lastPageFooter"},
    {BandRole::Summary,        "summary"},     {BandRole::NoData,       "noData"},
};
// clang-format on

const char* role_name(BandRole role)
{
    return std::ranges::find(kRoleNames, role, &RoleName::role)->name;
}

bool looks_at_variable(const Expression& expression)
{
    for (const auto& reference : expression.references()) {
        if (reference.kind == Reference::Kind::Variable) return true;
    }
    return false;
}

/// What floats, and what follows a break, is pushed down by each element above it.
void refuse_too_much_pushing(const ContainerPlan& plan)
{
    constexpr size_t kMostPairs = 4'000'000;
    const auto pushes = [](const PartPlan& part) {
        return part.kind == PartPlan::Kind::Break || part.element->position == model::PositionType::Float;
    };
    const auto moving = static_cast<size_t>(std::ranges::count_if(plan.parts, pushes));
    if (moving * plan.parts.size() <= kMostPairs) return;
    throw DefinitionError(std::ranges::find_if(plan.parts, pushes)->element->place, "element",
                          std::to_string(moving) + " of " + std::to_string(plan.parts.size()) +
                              " elements of one band float or are breaks, which is too many");
}

std::shared_ptr<ReportPlan> make_inner_plan(std::shared_ptr<const model::Definition> definition, Opening opening);

/// The same for what only reads it.
std::shared_ptr<const ReportPlan> make_fixed_plan(std::shared_ptr<const model::Definition> definition, Opening opening)
{
    return make_inner_plan(std::move(definition), std::move(opening));
}

/// The level at which an element's texts head what follows, as designers' tools write it; 0 for none.
uint8_t heading_level(const model::Element& element)
{
    if (const auto tag = model::property_value(element.properties, kAccessibilityTag)) {
        const bool is_heading = tag->size() == 2 && tag->front() == 'h' && tag->back() >= '1' && tag->back() <= '6';
        return is_heading ? static_cast<uint8_t>(tag->back() - '0') : 0;
    }
    for (char level = '1'; level <= '6'; ++level) {
        const auto value = model::property_value(element.properties, std::string(kHeadingTag) + level);
        if (value && *value != "none") return static_cast<uint8_t>(level - '0');
    }
    return 0;
}

/// Turns bands and elements of the definition into plans.
class PlanMaker {
public:
    PlanMaker(ReportPlan& plan, const Names& names, const Opening& opening)
        : plan_(plan), names_(names), opening_(opening), definition_(*plan.definition)
    {
    }

    void bands();
    void groups();
    void data();

private:
    struct BodyVisitor;

    BandPlan band(const model::Band& source, BandRole role, int group = kNoGroup);
    void band(BandPlan& target, const std::optional<model::Band>& source, BandRole role);
    void parts(ContainerPlan& container, const std::vector<model::Element>& elements, std::vector<size_t>& around);
    ContainerPlan container(const std::vector<model::Element>& elements);
    PartPlan part(const model::Element& element);
    void text_field(PartPlan& part, const model::TextField& field);
    void chart(PartPlan& part, const model::Chart& chart);
    void nested(PartPlan& part, std::unique_ptr<NestedPlan> nested);
    [[nodiscard]] Around around() { return {plan_, names_, opening_, plan_.warnings, make_fixed_plan}; }
    void barcode(PartPlan& part, const model::Barcode& barcode);
    void warn(Position place, const std::string& name, const std::string& text);
    void evaluation(PartPlan& part, EvaluationTime time, const std::string& group);
    std::unique_ptr<LinkPlan> link(const model::Hyperlink& link);
    void flag(FlagPlan& flag, const model::Element& element, std::string_view property);
    uint32_t source(const model::Element& element);
    Expression compiled(const model::ExpressionText& text, std::string_view what);

    ReportPlan& plan_;
    const Names& names_;
    const Opening& opening_;
    const model::Definition& definition_;
    BandRole role_ = BandRole::Detail;
    int group_ = kNoGroup;
};

Expression PlanMaker::compiled(const model::ExpressionText& text, std::string_view what)
{
    return text.present() ? compile(text.text, names_, text.place, what) : Expression();
}

void PlanMaker::warn(Position place, const std::string& name, const std::string& text)
{
    plan_.warnings.push_back(Warning{place, name, text}.line());
}

uint32_t PlanMaker::source(const model::Element& element)
{
    plan_.sources.push_back({element.uuid, role_name(role_),
                             group_ == kNoGroup ? std::string() : definition_.groups[static_cast<size_t>(group_)].name,
                             heading_level(element)});
    return static_cast<uint32_t>(plan_.sources.size() - 1);
}

void PlanMaker::flag(FlagPlan& flag, const model::Element& element, std::string_view name)
{
    if (const auto value = model::property_value(definition_.data.properties, name)) flag.value = *value == "true";
    for (const auto& property : element.properties) {
        if (property.name != name) continue;
        flag.value = property.value == "true";
        flag.expression = compiled(property.expression, "propertyExpression");
    }
}

void PlanMaker::evaluation(PartPlan& part, EvaluationTime time, const std::string& group)
{
    const bool is_text = part.kind == PartPlan::Kind::TextField;
    part.evaluation = time == EvaluationTime::Master && !is_text ? EvaluationTime::Report : time;
    if (time == EvaluationTime::Group) part.evaluation_group = group_index(definition_, group, part.element->place);
}

std::unique_ptr<LinkPlan> PlanMaker::link(const model::Hyperlink& source)
{
    if (!source.used()) return nullptr;
    static const std::map<std::string_view, Link::Kind> kKinds{
        {"Reference", Link::Kind::Reference},   {"LocalAnchor", Link::Kind::LocalAnchor},
        {"LocalPage", Link::Kind::LocalPage},   {"RemoteAnchor", Link::Kind::RemoteAnchor},
        {"RemotePage", Link::Kind::RemotePage},
    };
    auto plan = std::make_unique<LinkPlan>();
    if (const auto kind = kKinds.find(source.type); kind != kKinds.end()) plan->kind = kind->second;
    plan->when = compiled(source.when, "hyperlinkWhenExpression");
    plan->reference = compiled(source.reference, "hyperlinkReferenceExpression");
    plan->anchor = compiled(source.anchor, "hyperlinkAnchorExpression");
    plan->page = compiled(source.page, "hyperlinkPageExpression");
    plan->tooltip = compiled(source.tooltip, "hyperlinkTooltipExpression");
    plan->anchor_name = compiled(source.anchor_name, "anchorNameExpression");
    plan->level = compiled(source.bookmark_level_expression, "bookmarkLevelExpression");
    plan->bookmark_level = source.bookmark_level;
    return plan;
}

void PlanMaker::text_field(PartPlan& part, const model::TextField& field)
{
    part.kind = PartPlan::Kind::TextField;
    part.expression = compiled(field.expression, "textField");
    part.pattern = compiled(field.pattern, "patternExpression");
    part.adjust = field.adjust;
    part.link = link(field.link);
    evaluation(part, field.evaluation, field.evaluation_group);
}

void PlanMaker::chart(PartPlan& part, const model::Chart& chart)
{
    part.kind = PartPlan::Kind::Chart;
    part.look_kind = LookKind::Image;
    evaluation(part, chart.evaluation, chart.evaluation_group);
    std::unique_ptr<NestedPlan> rows;
    if (chart.run && !chart.run->dataset.empty()) {
        rows = plan_dataset_run(*part.element, *chart.run, around());
        if (!rows) {
            part.kind = PartPlan::Kind::Blank;
            return;
        }
        plan_.shares_rows |= rows->own_rows;
    }
    if (!chart_kind(chart.type)) {
        warn(part.element->place, "chart",
             "of the form '" + chart.type + "' is not drawn; its name stands in its place");
    }
    part.chart = plan_chart(chart, names_, definition_, std::move(rows), opening_.refusals);
    part.link = link(chart.link);
}

void PlanMaker::nested(PartPlan& part, std::unique_ptr<NestedPlan> nested)
{
    if (!nested) return;  // it has been told why
    part.kind = PartPlan::Kind::Nested;
    part.look_kind = LookKind::Frame;
    plan_.shares_rows |= nested->own_rows;
    part.nested = std::move(nested);
}

void PlanMaker::barcode(PartPlan& part, const model::Barcode& barcode)
{
    if (!draws_barcode(barcode.type)) {
        warn(part.element->place, "barcode", "of the type '" + barcode.type + "' is not drawn; the place stays empty");
        return;
    }
    part.kind = PartPlan::Kind::Barcode;
    part.look_kind = LookKind::Image;
    part.expression = compiled(barcode.code, "codeExpression");
    evaluation(part, barcode.evaluation, barcode.evaluation_group);
}

/// Gives a part its kind and what belongs to it.
struct PlanMaker::BodyVisitor {
    PlanMaker& maker;
    PartPlan& part;

    void graphic(PartPlan::Kind kind) const
    {
        part.kind = kind;
        part.look_kind = LookKind::Graphic;
    }

    void operator()(const model::StaticText&) const { part.kind = PartPlan::Kind::StaticText; }
    void operator()(const model::TextField& field) const { maker.text_field(part, field); }
    void operator()(const model::Line&) const { graphic(PartPlan::Kind::Line); }
    void operator()(const model::Rectangle&) const { graphic(PartPlan::Kind::Rectangle); }
    void operator()(const model::Ellipse&) const { graphic(PartPlan::Kind::Ellipse); }
    void operator()(const model::Image& image) const
    {
        part.kind = PartPlan::Kind::Image;
        part.look_kind = LookKind::Image;
        part.expression = maker.compiled(image.expression, "image");
        part.link = maker.link(image.link);
        maker.evaluation(part, image.evaluation, image.evaluation_group);
    }
    void operator()(const model::Frame& frame) const
    {
        part.kind = PartPlan::Kind::Frame;
        part.look_kind = LookKind::Frame;
        part.children = std::make_unique<ContainerPlan>(maker.container(frame.children));
    }
    void operator()(const model::ElementGroup&) const {}
    void operator()(const model::Break&) const { part.kind = PartPlan::Kind::Break; }
    void operator()(const model::Chart& chart) const { maker.chart(part, chart); }
    void operator()(const model::Subreport& subreport) const
    {
        maker.nested(part, plan_subreport(*part.element, subreport, maker.around()));
    }
    void operator()(const model::ListComponent& list) const
    {
        maker.nested(part, plan_list(*part.element, list, maker.around()));
    }
    void operator()(const model::TableComponent& table) const
    {
        maker.nested(part, plan_table(*part.element, table, maker.around()));
    }
    void operator()(const model::Barcode& barcode) const { maker.barcode(part, barcode); }
    void operator()(const model::UnknownElement&) const {}  // the reader has told
};

PartPlan PlanMaker::part(const model::Element& element)
{
    PartPlan part;
    part.element = &element;
    part.source = source(element);
    part.print_when = compiled(element.print_when, "printWhenExpression");
    part.style_expression = compiled(element.style_expression, "styleExpression");
    part.style = plan_.styles->find(element.style);
    if (!part.style) part.style = plan_.styles->find({});
    if (!element.print_when_group_changes.empty()) {
        part.new_group = group_index(definition_, element.print_when_group_changes, element.place);
    }
    flag(part.keep_full_text, element, kKeepFullText);
    flag(part.consume_space_on_overflow, element, kConsumeSpace);

    std::visit(BodyVisitor{*this, part}, element.body);
    return part;
}

void PlanMaker::parts(ContainerPlan& container, const std::vector<model::Element>& elements,
                      std::vector<size_t>& around)
{
    around.push_back(container.stretch_groups.size());
    container.stretch_groups.emplace_back();
    for (const auto& element : elements) {
        if (const auto* group = std::get_if<model::ElementGroup>(&element.body)) {
            parts(container, group->children, around);
            continue;
        }
        container.parts.push_back(part(element));
        container.parts.back().stretch_group = around.back();
        for (const size_t group : around) {
            container.stretch_groups[group].push_back(container.parts.size() - 1);
        }
    }
    around.pop_back();
}

ContainerPlan PlanMaker::container(const std::vector<model::Element>& elements)
{
    ContainerPlan plan;
    std::vector<size_t> around;
    parts(plan, elements, around);
    refuse_too_much_pushing(plan);
    return plan;
}

BandPlan PlanMaker::band(const model::Band& source, BandRole role, int group)
{
    role_ = role;
    group_ = group;
    BandPlan plan;
    plan.role = role;
    plan.group = group;
    plan.present = true;
    plan.height = std::max(0, source.height);
    plan.break_height = plan.height;
    plan.prevents_split = source.split == SplitType::Prevent;
    plan.print_when = compiled(source.print_when, "printWhenExpression");
    plan.content = container(source.elements);
    if (source.split == SplitType::Immediate) {
        for (const auto& part : plan.content.parts) {
            plan.break_height = std::min(plan.break_height, part.element->y + part.element->height);
        }
    }
    return plan;
}

void PlanMaker::band(BandPlan& target, const std::optional<model::Band>& source, BandRole role)
{
    if (source) target = band(*source, role);
    target.role = role;
}

void PlanMaker::bands()
{
    band(plan_.background, definition_.background, BandRole::Background);
    band(plan_.title, definition_.title, BandRole::Title);
    band(plan_.page_header, definition_.page_header, BandRole::PageHeader);
    band(plan_.column_header, definition_.column_header, BandRole::ColumnHeader);
    band(plan_.column_footer, definition_.column_footer, BandRole::ColumnFooter);
    band(plan_.page_footer, definition_.page_footer, BandRole::PageFooter);
    band(plan_.last_page_footer, definition_.last_page_footer, BandRole::LastPageFooter);
    band(plan_.summary, definition_.summary, BandRole::Summary);
    // one without anything gets no page of its own
    if (plan_.summary.height == 0 && plan_.summary.content.parts.empty()) plan_.summary.present = false;
    band(plan_.no_data, definition_.no_data, BandRole::NoData);
    for (const auto& detail : definition_.details) {
        plan_.details.push_back(band(detail, BandRole::Detail));
        plan_.estimates_for_details |= looks_at_variable(plan_.details.back().print_when);
    }
}

void PlanMaker::groups()
{
    for (size_t index = 0; index < definition_.groups.size(); ++index) {
        const model::Group& source = definition_.groups[index];
        if (source.keep_together && source.headers.empty()) {
            warn(source.place, "group",
                 "'" + source.name + "' has no header, and only groups with one are kept together");
        }
        GroupPlan plan;
        plan.group = &source;
        plan.expression = compiled(source.expression, "groupExpression");
        plan_.estimates_for_groups |= looks_at_variable(plan.expression);
        for (const auto& header : source.headers) {
            plan.headers.push_back(band(header, BandRole::GroupHeader, static_cast<int>(index)));
        }
        for (const auto& footer : source.footers) {
            plan.footers.push_back(band(footer, BandRole::GroupFooter, static_cast<int>(index)));
        }
        plan_.groups.push_back(std::move(plan));
    }
}

void PlanMaker::data()
{
    for (auto& plan : plan_.parameters) {
        for (const auto& parameter : definition_.data.parameters) {
            if (parameter.name == plan.name) plan.default_value = compiled(parameter.default_value, "parameter");
        }
    }
    for (auto& plan : plan_.variables) {
        const std::string_view declared = std::string_view(plan.name).substr(0, plan.name.find('\n'));
        for (const auto& variable : definition_.data.variables) {
            if (variable.name != declared) continue;
            plan.expression = compiled(variable.expression, "variable");
            const auto kind = plan.expression.result_class();
            if (kind == ValueClass::List || kind == ValueClass::Map) {
                warn(variable.expression.place, "variable",
                     "'" + variable.name + "' holds a list; lists are not kept from row to row, and it stays empty");
            }
            plan.initial = compiled(variable.initial_value, "variable");
        }
    }
    plan_.filter = compiled(definition_.data.filter, "filterExpression");
    plan_.estimates_for_filter = looks_at_variable(plan_.filter);
    for (const auto& property : definition_.data.properties) {
        if (property.expression.present()) {
            plan_.properties[property.name] = compiled(property.expression, "propertyExpression");
        }
    }
}

std::shared_ptr<ReportPlan> make_inner_plan(std::shared_ptr<const model::Definition> definition, Opening opening)
{
    auto plan = std::make_shared<ReportPlan>();
    plan->definition = std::move(definition);
    std::error_code error;
    const auto file = std::filesystem::weakly_canonical(plan->definition->path, error);
    const bool is_new = opening.files.empty() || opening.files.back() != file;
    if (!plan->definition->path.empty() && is_new) opening.files.push_back(file);
    plan->sources.emplace_back();
    plan->parameters = plan_parameters(*plan->definition);
    plan->fields = plan_fields(*plan->definition);
    plan->variables = plan_variables(*plan->definition);
    const PlanNames names(*plan, opening.refusals);
    plan->styles = std::make_unique<StylePlans>(*plan->definition, names);
    PlanMaker maker(*plan, names, opening);
    maker.data();
    maker.groups();
    maker.bands();
    return plan;
}

}  // namespace

std::shared_ptr<const ReportPlan> make_plan(std::shared_ptr<const model::Definition> definition, bool lenient)
{
    Refusals refusals;
    Opening opening;
    opening.refusals = &refusals;
    auto plan = make_inner_plan(std::move(definition), opening);
    if (!lenient) refusals.raise();
    for (const auto& line : refusals.lines()) plan->warnings.push_back(line + "; it gives nothing");
    return plan;
}

}  // namespace velora::engine
