#include "engine/definition/parts.h"

#include <algorithm>

#include "values/text.h"

namespace velora::engine {

namespace {

using namespace model;

// clang-format off
constexpr auto kParameterRules = std::to_array<AttributeRule<Parameter>>({
    {"name",           set_text<&Parameter::name>},
    {"class",          set_text<&Parameter::class_name>},
    {"nestedType",     set_text<&Parameter::nested_type>},
    {"forPrompting",   set_flag<&Parameter::for_prompting>},
    {"evaluationTime", set_nothing<Parameter>},
});

constexpr auto kParameterChildren = std::to_array<ChildRule<Parameter>>({
    {"defaultValueExpression", read_expression<&Parameter::default_value>},
    {"description",            read_nothing<Parameter>},
    {"parameterDescription",   read_nothing<Parameter>},
});

constexpr auto kFieldRules = std::to_array<AttributeRule<Field>>({
    {"name",  set_text<&Field::name>},
    {"class", set_text<&Field::class_name>},
});

constexpr auto kFieldChildren = std::to_array<ChildRule<Field>>({
    {"description",      [](Field& f, Tag& child) { f.description = child.text(); }},
    {"fieldDescription", [](Field& f, Tag& child) { f.description = child.text(); }},
});

constexpr auto kVariableRules = std::to_array<AttributeRule<Variable>>({
    {"name",                    set_text<&Variable::name>},
    {"class",                   set_text<&Variable::class_name>},
    {"calculation",             set_choice<&Variable::calculation, kCalculations>},
    {"resetType",               set_choice<&Variable::reset, kMoments>},
    {"resetGroup",              set_text<&Variable::reset_group>},
    {"incrementType",           set_choice<&Variable::increment, kMoments>},
    {"incrementGroup",          set_text<&Variable::increment_group>},
    {"incrementerFactoryClass", set_nothing<Variable>},
});

constexpr auto kVariableChildren = std::to_array<ChildRule<Variable>>({
    {"expression",             read_expression<&Variable::expression>},
    {"variableExpression",     read_expression<&Variable::expression>},
    {"initialValueExpression", read_expression<&Variable::initial_value>},
    {"description",            read_nothing<Variable>},
});

constexpr auto kSortKinds = std::to_array<Choice<SortField::By>>({{"Field", SortField::By::Field}, {"Variable", SortField::By::Variable}});
constexpr auto kSortOrders = std::to_array<Choice<bool>>({{"Ascending", false}, {"Descending", true}});

constexpr auto kSortRules = std::to_array<AttributeRule<SortField>>({
    {"name",  set_text<&SortField::name>},
    {"type",  set_choice<&SortField::by, kSortKinds>},
    {"order", set_choice<&SortField::descending, kSortOrders>},
});

constexpr auto kDatasetRules = std::to_array<AttributeRule<Dataset>>({
    {"name",                    set_text<&Dataset::name>},
    {"resourceBundle",          set_text<&Dataset::resource_bundle>},
    {"whenResourceMissingType", set_choice<&Dataset::when_resource_missing, kMissingResources>},
    {"scriptletClass",          [](Dataset&, const Attribute& a) { a.warn("scriptlets are not run"); }},
});
// clang-format on

/// Declared things share their form: attributes, children of their own, properties.
template <class Declared>
void read_declared(std::vector<Declared>& all, Tag& tag, std::span<const AttributeRule<Declared>> rules,
                   std::span<const ChildRule<Declared>> children)
{
    Declared out;
    out.place = tag.place();
    tag.require("name");
    tag.read(rules, out);
    tag.each_child([&](Tag& child) {
        if constexpr (requires { out.properties; }) {
            if (read_property(out.properties, child)) return true;
        }
        return read_child(children, out, child);
    });
    constexpr size_t kMost = 10'000;  // each name is compared with all before
    if (all.size() == kMost) tag.fail("more than 10,000 of a kind are declared");
    const auto same = std::ranges::find(all, out.name, &Declared::name);
    if (same != all.end()) {
        tag.warn("'" + out.name + "' is declared twice; the first one is taken");
        return;
    }
    all.push_back(std::move(out));
}

void read_query(Dataset& data, Tag& tag)
{
    if (const auto language = tag.value("language"); !language.empty()) data.query.language = lower_ascii(language);
    data.query.text = tag.expression();
    const std::string& text = data.query.text.text;
    if (text.find("$P!{") != std::string::npos) {
        tag.fail("$P!{} pastes text into the statement and is refused; use $P{}, which is bound as a value");
    }
    if (text.find("$X{") != std::string::npos) tag.warn("the clauses of $X{} are not supported");
}

void read_sort_field(Dataset& data, Tag& tag)
{
    SortField out;
    out.place = tag.place();
    tag.require("name");
    tag.read<SortField>(kSortRules, out);
    data.sort_fields.push_back(std::move(out));
}

void read_scriptlet(Dataset&, Tag& tag)
{
    tag.warn("scriptlets are not run");
    tag.ignore_all();
}

/// The groups of a dataset without bands: a name and an expression.
void read_data_group(Dataset& data, Tag& tag)
{
    Group group;
    group.place = tag.place();
    group.name = tag.required("name");
    tag.each_child([&](Tag& child) {
        if (child.name() != "expression" && child.name() != "groupExpression") return false;
        group.expression = child.expression();
        return true;
    });
    data.groups.push_back(std::move(group));
}

constexpr auto kDataChildren = std::to_array<ChildRule<Dataset>>({
    {"parameter",
     [](Dataset& d, Tag& t) { read_declared<Parameter>(d.parameters, t, kParameterRules, kParameterChildren); }},
    {"field", [](Dataset& d, Tag& t) { read_declared<Field>(d.fields, t, kFieldRules, kFieldChildren); }},
    {"variable",
     [](Dataset& d, Tag& t) { read_declared<Variable>(d.variables, t, kVariableRules, kVariableChildren); }},
    {"query", read_query},
    {"queryString", read_query},
    {"sortField", read_sort_field},
    {"filterExpression", read_expression<&Dataset::filter>},
    {"scriptlet", read_scriptlet},
    {"import", read_nothing<Dataset>},
});

/// A parameter that is handed to a dataset, with its expression.
std::pair<std::string, ExpressionText> read_argument(Tag& tag)
{
    std::pair<std::string, ExpressionText> out{tag.required("name"), {}};
    tag.each_child([&](Tag& child) {
        const auto name = child.name();
        if (name != "expression" && name != "datasetParameterExpression") return false;
        out.second = child.expression();
        return true;
    });
    return out;
}

void read_run_parameter(DatasetRun& run, Tag& child)
{
    run.parameters.push_back(read_argument(child));
}

// clang-format off
constexpr auto kReturnRules = std::to_array<AttributeRule<ReturnValue>>({
    {"subreportVariable",       set_text<&ReturnValue::from_variable>},
    {"fromVariable",            set_text<&ReturnValue::from_variable>},
    {"toVariable",              set_text<&ReturnValue::to_variable>},
    {"calculation",             set_choice<&ReturnValue::calculation, kCalculations>},
    {"incrementerFactoryClass", set_nothing<ReturnValue>},
});
// clang-format on

constexpr auto kRunChildren = std::to_array<ChildRule<DatasetRun>>({
    {"parameter", read_run_parameter},
    {"datasetParameter", read_run_parameter},
    {"dataSourceExpression", read_expression<&DatasetRun::source>},
    {"connectionExpression", read_expression<&DatasetRun::connection>},
    {"parametersMapExpression", read_nothing<DatasetRun>},
    {"returnValue", [](DatasetRun& run, Tag& child) { run.returns.push_back(read_return_value(child)); }},
});

}  // namespace

bool read_property(Properties& target, Tag& child)
{
    const bool computed = child.name() == "propertyExpression";
    if (!computed && child.name() != "property") return false;
    Property property;
    property.name = child.value("name");
    if (computed) {
        property.expression = child.expression();
    } else {
        property.value = child.value("value");
        if (property.value.empty()) property.value = child.text();
    }
    target.push_back(std::move(property));
    return true;
}

ReturnValue read_return_value(Tag& tag)
{
    ReturnValue value;
    value.place = tag.place();
    tag.read<ReturnValue>(kReturnRules, value);
    tag.each_child([&](Tag& child) {
        if (child.name() != "expression") return false;
        value.from = child.expression();
        return true;
    });
    return value;
}

DatasetRun read_dataset_run(Tag& tag)
{
    DatasetRun run;
    run.dataset = tag.value("subDataset");
    Properties properties;
    tag.each_child([&](Tag& child) {
        return read_child<DatasetRun>(kRunChildren, run, child) || read_property(properties, child);
    });
    return run;
}

bool read_data_child(Dataset& target, Tag& child)
{
    return read_property(target.properties, child) || read_child<Dataset>(kDataChildren, target, child);
}

Dataset read_dataset(Tag& tag)
{
    Dataset data;
    data.place = tag.place();
    tag.require("name");
    tag.read<Dataset>(kDatasetRules, data);
    tag.each_child([&](Tag& child) {
        if (child.name() == "group") {
            read_data_group(data, child);
            return true;
        }
        return read_data_child(data, child);
    });
    return data;
}

}  // namespace velora::engine
