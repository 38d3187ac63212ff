#include "engine/plan/load.h"

#include <algorithm>
#include <iterator>

#include "engine/definition/checks.h"
#include "engine/definition/file_beside.h"
#include "engine/definition/reader.h"
#include "engine/expression/constant.h"

namespace velora::engine {

namespace fs = std::filesystem;

namespace {

/// The styles of the templates that a definition names.
std::vector<model::Style> template_styles(const model::Definition& definition, std::vector<Warning>& warnings)
{
    std::vector<model::Style> styles;
    for (const auto& source : definition.templates) {
        const Expression expression = compile(source.text, NoNames(), source.place, "template");
        const std::string name = constant_text(expression).value_or(std::string());
        const auto file = file_beside(definition.folder, name);
        if (!file || !fs::exists(*file)) {
            warnings.push_back({source.place, "template", "there is no style template '" + name + "'"});
            continue;
        }
        std::ranges::move(read_template_file(*file, warnings), std::back_inserter(styles));
    }
    return styles;
}

}  // namespace

model::Definition load_definition(const fs::path& file, std::vector<Warning>& warnings)
{
    model::Definition definition = read_definition_file(file, warnings);
    if (definition.templates.empty()) return definition;
    // the definition's own styles win over those of the same name in a template
    auto styles = template_styles(definition, warnings);
    for (auto& style : styles) {
        const bool is_known =
            std::ranges::find(definition.styles, style.name, &model::Style::name) != definition.styles.end();
        if (!is_known) definition.styles.push_back(std::move(style));
    }
    check_styles(definition.styles, warnings);
    return definition;
}

}  // namespace velora::engine
