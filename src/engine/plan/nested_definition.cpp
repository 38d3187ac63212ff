#include "engine/plan/nested_definition.h"

#include <algorithm>

#include "engine/expression/definition_error.h"

namespace velora::engine {

namespace {

using model::TableCell;
using model::TableColumn;
using Cell = std::optional<TableCell> TableColumn::*;

/// The height that a kind of cell takes in a column, with those of the columns below a common head.
int cell_height(const TableColumn& column, Cell cell)
{
    int below = 0;
    for (const auto& inner : column.columns) {
        below = std::max(below, cell_height(inner, cell));
    }
    return below + (column.*cell ? std::max(0, (column.*cell)->height) : 0);
}

int column_width(const TableColumn& column)
{
    if (column.columns.empty()) return column.width;
    int width = 0;
    for (const auto& inner : column.columns) width += column_width(inner);
    return width;
}

/// A cell as a frame that grows with its row.
model::Element cell_frame(const TableColumn& column, const TableCell& cell, const model::Element& table)
{
    model::Element frame;
    frame.uuid = table.uuid;
    frame.width = column_width(column);
    frame.height = cell.height;
    frame.style = cell.style;
    frame.attributes.box = cell.box;
    frame.stretch = model::StretchType::ContainerBottom;
    frame.print_when = column.print_when;
    frame.place = table.place;
    frame.body = model::Frame{cell.contents, false};
    return frame;
}

/// Places the cells of one kind from `x` on. @param is_footer  a common cell stands below those that it spans
void place_cells(model::Band& band, const std::vector<TableColumn>& columns, Cell kind, int x, int y, bool is_footer,
                 const model::Element& table)
{
    for (const auto& column : columns) {
        const int own = column.*kind ? std::max(0, (column.*kind)->height) : 0;
        const int all = cell_height(column, kind);
        if (column.*kind) {
            model::Element frame = cell_frame(column, *(column.*kind), table);
            frame.x = x;
            frame.y = is_footer ? y + all - own : y;
            if (!column.columns.empty()) frame.stretch = model::StretchType::NoStretch;
            band.elements.push_back(std::move(frame));
        }
        place_cells(band, column.columns, kind, x, is_footer ? y : y + own, is_footer, table);
        x += column_width(column);
    }
}

std::optional<model::Band> row_of(const model::TableComponent& table, Cell kind, bool is_footer,
                                  const model::Element& element)
{
    model::Band band;
    for (const auto& column : table.columns) {
        band.height = std::max(band.height, cell_height(column, kind));
    }
    place_cells(band, table.columns, kind, 0, 0, is_footer, element);
    if (band.elements.empty()) return std::nullopt;
    band.place = element.place;
    band.split = model::SplitType::Prevent;
    return band;
}

void set_width(model::Definition& definition, int width)
{
    definition.page.width = width;
    definition.page.column_width = width;
}

}  // namespace

void make_endless(model::Definition& definition)
{
    model::PageLayout& page = definition.page;
    page.left = page.right = page.top = page.bottom = 0;
    page.height = 0;
    definition.ignore_pagination = true;
    definition.title_new_page = false;
    definition.summary_new_page = false;
    for (auto& group : definition.groups) {
        group.start_new_page = false;
        group.start_new_column = false;
        group.reset_page_number = false;
    }
}

model::Definition dataset_definition(const model::Definition& around, const model::DatasetRun& run, Position place)
{
    model::Definition definition;
    definition.name = around.name;
    definition.path = around.path;
    definition.folder = around.folder;
    definition.styles = around.styles;
    definition.datasets = around.datasets;
    definition.data = around.data;
    definition.groups = around.groups;
    for (auto& group : definition.groups) {
        group.headers.clear();
        group.footers.clear();
    }
    if (!run.dataset.empty()) {
        const auto is_it = [&](const model::Dataset& dataset) { return dataset.name == run.dataset; };
        const auto found = std::find_if(around.datasets.begin(), around.datasets.end(), is_it);
        if (found == around.datasets.end()) {
            throw DefinitionError(place, "datasetRun", "there is no sub-dataset '" + run.dataset + "'");
        }
        definition.data = *found;
        definition.groups = found->groups;
    }
    definition.when_no_data = model::WhenNoData::NoPages;
    make_endless(definition);
    return definition;
}

model::Definition list_definition(const model::Definition& around, const model::Element& element,
                                  const model::ListComponent& list)
{
    model::Definition definition = dataset_definition(around, list.run, element.place);
    set_width(definition, element.width);
    if (list.horizontal && list.content_width > 0) {
        definition.page.order = model::PrintOrder::Horizontal;
        definition.page.column_width = list.content_width;
        definition.page.column_count = std::clamp(element.width / list.content_width, 1, 1000);
    }
    model::Band band;
    band.height = list.content_height;
    band.elements = list.contents;
    band.place = element.place;
    definition.details.push_back(std::move(band));
    return definition;
}

model::Definition table_definition(const model::Definition& around, const model::Element& element,
                                   const model::TableComponent& table)
{
    model::Definition definition = dataset_definition(around, table.run, element.place);
    int width = 0;
    for (const auto& column : table.columns) width += column_width(column);
    set_width(definition, std::max(width, element.width));
    definition.title = row_of(table, &TableColumn::table_header, false, element);
    definition.column_header = row_of(table, &TableColumn::column_header, false, element);
    if (auto detail = row_of(table, &TableColumn::detail, false, element)) definition.details.push_back(*detail);
    definition.column_footer = row_of(table, &TableColumn::column_footer, true, element);
    definition.summary = row_of(table, &TableColumn::table_footer, true, element);
    if (table.heads_without_rows) definition.when_no_data = model::WhenNoData::AllSectionsNoDetail;
    return definition;
}

}  // namespace velora::engine
