#include "engine/definition/checks.h"

#include "engine/definition/source.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>

namespace velora::engine {

namespace {

using namespace model;

// ---------------------------------------------------------------------------------------------------- pages

void check_page(Definition& definition, SourceText& source)
{
    PageLayout& page = definition.page;
    const Position place = definition.data.place;
    const int room = page.width - page.left - page.right;
    if (room < 1) {
        throw DefinitionError(place, "jasperReport", "the left and right margins leave no room on the page");
    }
    if (page.height - page.top - page.bottom < 1) {
        throw DefinitionError(place, "jasperReport", "the top and bottom margins leave no room on the page");
    }
    const int spacing = page.column_spacing * (page.column_count - 1);
    const int wide = room - spacing;
    const int most = wide / page.column_count;
    if (most < 1) throw DefinitionError(place, "jasperReport", "the columns have no room on the page");
    if (page.column_width >= 1 && page.column_width <= most) return;
    source.warn(place, "jasperReport",
                "the columns of " + std::to_string(page.column_width) + " points do not fit, " + std::to_string(most) +
                    " is taken");
    page.column_width = most;
}

// ------------------------------------------------------------------------------------------- names of groups

class GroupNames {
public:
    explicit GroupNames(const std::vector<Group>& groups) : groups_(groups) {}

    void require(const std::string& name, Position place, const std::string& what) const
    {
        if (std::ranges::find(groups_, name, &Group::name) != groups_.end()) return;
        const std::string reason =
            name.empty() ? "asks for a group and names none" : "there is no group '" + name + "'";
        throw DefinitionError(place, what, reason);
    }

private:
    const std::vector<Group>& groups_;
};

/// The variables that every report has.
bool is_built_in(std::string_view name, const std::vector<Group>& groups)
{
    constexpr std::array<std::string_view, 5> kBuiltIn{"REPORT_COUNT", "PAGE_COUNT", "COLUMN_COUNT", "PAGE_NUMBER",
                                                       "COLUMN_NUMBER"};
    return std::ranges::find(kBuiltIn, name) != kBuiltIn.end() ||
           std::ranges::any_of(groups, [&](const Group& group) { return name == group.name + "_COUNT"; });
}

void check_variables(const Dataset& data, const std::vector<Group>& groups)
{
    const GroupNames names(groups);
    for (const Variable& variable : data.variables) {
        const std::string what = "variable '" + variable.name + "'";
        if (variable.reset == Moment::Group) names.require(variable.reset_group, variable.place, what);
        if (variable.increment == Moment::Group) names.require(variable.increment_group, variable.place, what);
    }
    for (const SortField& sort : data.sort_fields) {
        const bool known =
            sort.by == SortField::By::Field
                ? std::ranges::find(data.fields, sort.name, &Field::name) != data.fields.end()
                : is_built_in(sort.name, groups) ||
                      std::ranges::find(data.variables, sort.name, &Variable::name) != data.variables.end();
        if (!known) throw DefinitionError(sort.place, "sortField", "there is no '" + sort.name + "' to sort by");
    }
}

void check_groups(const std::vector<Group>& groups)
{
    constexpr size_t kMost = 1000;  // each row compares them all
    if (groups.size() > kMost) throw DefinitionError(groups[kMost].place, "group", "there are more than 1,000 groups");
    for (auto group = groups.begin(); group != groups.end(); ++group) {
        if (std::find_if(groups.begin(), group, [&](const Group& g) { return g.name == group->name; }) != group) {
            throw DefinitionError(group->place, "group", "there are two groups '" + group->name + "'");
        }
    }
}

// ------------------------------------------------------------------------------------------------- elements

class ElementCheck {
public:
    ElementCheck(const Definition& definition, SourceText& source)
        : definition_(definition), groups_(definition.groups), source_(source)
    {
        for (const model::Style& style : definition.styles) styles_.insert(style.name);
    }

    void run() const
    {
        for (const auto* band : {&definition_.background, &definition_.title, &definition_.page_header,
                                 &definition_.column_header, &definition_.column_footer, &definition_.page_footer,
                                 &definition_.last_page_footer, &definition_.summary, &definition_.no_data}) {
            if (*band) check((*band)->elements);
        }
        for (const Band& band : definition_.details) check(band.elements);
        for (const Group& group : definition_.groups) {
            for (const Band& band : group.headers) check(band.elements);
            for (const Band& band : group.footers) check(band.elements);
        }
    }

private:
    void check(const std::vector<Element>& elements) const
    {
        for (const Element& element : elements) check(element);
    }

    void check(const Element& element) const
    {
        const bool known = element.style.empty() || !definition_.templates.empty() || styles_.contains(element.style);
        if (!known) source_.warn(element.place, "element", "there is no style '" + element.style + "'");
        if (!element.print_when_group_changes.empty()) {
            groups_.require(element.print_when_group_changes, element.place, "element");
        }
        std::visit([&](const auto& body) { check_body(body, element.place); }, element.body);
    }

    template <class Body>
    void check_body(const Body& body, Position place) const
    {
        if constexpr (requires { body.evaluation_group; }) {
            if (body.evaluation == EvaluationTime::Group) groups_.require(body.evaluation_group, place, "element");
        }
        if constexpr (requires { body.children; }) check(body.children);
        if constexpr (requires {
                          body.run;
                          body.reset;
                      }) {
            check_dataset(body.run, place);
            if (body.reset == Moment::Group) groups_.require(body.reset_group, place, "chart");
            if (body.increment == Moment::Group) groups_.require(body.increment_group, place, "chart");
        }
    }

    void check_dataset(const std::optional<DatasetRun>& run, Position place) const
    {
        if (!run || run->dataset.empty()) return;
        const auto& all = definition_.datasets;
        if (std::ranges::find(all, run->dataset, &Dataset::name) != all.end()) return;
        throw DefinitionError(place, "datasetRun", "there is no dataset '" + run->dataset + "'");
    }

    const Definition& definition_;
    GroupNames groups_;
    std::set<std::string_view> styles_;
    SourceText& source_;
};

/// The names on the way from a style to itself: "A, B, A".
std::string cycle_from(const model::Style& start, const std::map<std::string, const model::Style*, std::less<>>& styles)
{
    std::string names = start.name;
    for (const model::Style* at = styles.at(start.parent); at->name != start.name; at = styles.at(at->parent)) {
        names += ", " + at->name;
    }
    return names + ", " + start.name;
}

}  // namespace

void check_styles(const std::vector<model::Style>& styles, std::vector<Warning>& warnings)
{
    std::map<std::string, const model::Style*, std::less<>> by_name;
    for (const model::Style& style : styles) by_name[style.name] = &style;
    std::set<const model::Style*> checked;  // with all that they inherit from
    for (const model::Style& style : styles) {
        std::set<const model::Style*> way;
        for (const model::Style* at = by_name.at(style.name); at != nullptr && !checked.contains(at);) {
            if (!way.insert(at).second) {
                throw DefinitionError(at->place, "style",
                                      "styles inherit from each other: " + cycle_from(*at, by_name));
            }
            const auto parent = by_name.find(at->parent);
            if (parent == by_name.end() && !at->parent.empty()) {
                warnings.push_back({at->place, "style", "there is no style '" + at->parent + "'"});
            }
            at = parent == by_name.end() || at->parent.empty() ? nullptr : parent->second;
        }
        checked.merge(way);
    }
}

void check_definition(Definition& definition, SourceText& source)
{
    check_page(definition, source);
    check_groups(definition.groups);
    check_variables(definition.data, definition.groups);
    for (const Dataset& dataset : definition.datasets) check_variables(dataset, dataset.groups);
    // a template may bring the styles that are missing here; they are checked again when it has joined
    std::vector<Warning> found;
    check_styles(definition.styles, found);
    if (definition.templates.empty()) {
        for (auto& warning : found) source.warn(warning.place, warning.element, std::move(warning.text));
    }
    ElementCheck(definition, source).run();
}

}  // namespace velora::engine
