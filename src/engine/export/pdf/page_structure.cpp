#include "engine/export/pdf/page_structure.h"

#include <algorithm>
#include <filesystem>
#include <limits>

#include "engine/export/common/page_walk.h"

namespace velora::engine {
namespace {

constexpr size_t kMostLabels = 500;  // bytes of a drawing's labels that stand for its description

const Link* link_of(const Element& element)
{
    if (const auto* text = std::get_if<Text>(&element.content)) {
        return text->detail && text->detail->link.kind != Link::Kind::None ? &text->detail->link : nullptr;
    }
    const auto* image = std::get_if<Image>(&element.content);
    return image != nullptr ? image->link.get() : nullptr;
}

bool is_linked(const Element& element)
{
    const Link* link = link_of(element);
    if (link != nullptr && link->kind != Link::Kind::None) return true;
    const auto* text = std::get_if<Text>(&element.content);
    return text != nullptr && text->detail &&
           std::ranges::any_of(text->detail->runs, [](const TextRun& run) { return !run.link.empty(); });
}

bool is_text(const Element& element)
{
    return std::holds_alternative<Text>(element.content);
}

std::string labels_of(const Drawing& drawing)
{
    std::string out;
    for (const auto& item : drawing.items) {
        const auto* label = std::get_if<Label>(&item);
        if (label == nullptr || label->text.empty() || out.size() + label->text.size() > kMostLabels) continue;
        out += (out.empty() ? "" : ", ") + label->text;
    }
    return out;
}

/// What is told of a picture to those who cannot see it: its tool tip, or else what it was called.
std::string description_of(const Element& element)
{
    if (const Link* link = link_of(element); link != nullptr && !link->tooltip.empty()) return link->tooltip;
    if (const auto* graphic = std::get_if<Graphic>(&element.content)) {
        if (!graphic->drawing) return {};
        return graphic->drawing->description.empty() ? labels_of(*graphic->drawing) : graphic->drawing->description;
    }
    const auto& image = std::get<Image>(element.content);
    return image.data ? std::filesystem::path(image.data->source).stem().string() : std::string();
}

/// Whether a reader is to hear of the element. Lines and grounds are decoration, and so is a drawing without a word.
bool tells_something(const Element& element)
{
    if (const auto* text = std::get_if<Text>(&element.content)) return !text->text.empty();
    if (const auto* image = std::get_if<Image>(&element.content)) return image->data != nullptr;
    const auto* graphic = std::get_if<Graphic>(&element.content);
    return graphic != nullptr && !description_of(element).empty();
}

/// Points that two stretches share.
int32_t overlap(int32_t left, int32_t right, int32_t other_left, int32_t other_right)
{
    return std::min(right, other_right) - std::max(left, other_left);
}

int32_t right_of(const Place& place)
{
    return place.x + std::max(place.width, 1);
}

/// Whether all stand beside each other, as the cells of a row do.
bool on_one_line(const auto& run)
{
    int32_t top = std::numeric_limits<int32_t>::min(), bottom = std::numeric_limits<int32_t>::max();
    for (const auto& leaf : run) {
        if (!is_text(*leaf.element)) return false;
        top = std::max(top, leaf.place.y);
        bottom = std::min(bottom, leaf.place.y + leaf.place.height);
    }
    return top < bottom;
}

}  // namespace

void StructureFinder::begin(const Document& document)
{
    *this = {};
    document_ = &document;
}

const Source& StructureFinder::source(const Leaf& leaf) const
{
    const auto& sources = *document_->sources;
    return sources[leaf.element->source < sources.size() ? leaf.element->source : 0];
}

void StructureFinder::collect(const std::vector<Element>& elements, int32_t x, int32_t y)
{
    for (const Element& element : elements) {
        const Place place = place_on_page(element.place, x, y);
        next_begins_ |= element.begins_band;
        const size_t index = found_.owners.size();
        found_.owners.emplace_back();
        if (tells_something(element)) leaves_.push_back({&element, place, index, std::exchange(next_begins_, false)});
        if (const auto* frame = std::get_if<Frame>(&element.content)) {
            const Box& box = element.style->box;
            collect(frame->children, place.x + box.left_padding, place.y + box.top_padding);
        }
    }
}

PageStructure StructureFinder::find(const Page& page)
{
    found_ = {};
    leaves_.clear();
    ++pages_;
    if (table_ >= 0) table_ = StructurePart::kOpenTable;
    next_begins_ = true;
    collect(page.elements, 0, 0);
    for (size_t first = 0, last = 0; first < leaves_.size(); first = last) {
        const Source& of = source(leaves_[first]);
        last = first + 1;
        while (last < leaves_.size() && !leaves_[last].begins && source(leaves_[last]).band == of.band) ++last;
        take_run(
            Leaves(leaves_.begin() + static_cast<ptrdiff_t>(first), leaves_.begin() + static_cast<ptrdiff_t>(last)));
    }
    take_running(std::exchange(head_, {}));  // no row came below it
    return std::move(found_);
}

void StructureFinder::take_run(const Leaves& run)
{
    const std::string& band = source(run[0]).band;
    const bool in_table = table_ != StructurePart::kDocument;
    const bool is_first_page = pages_ == 1;
    if (band == "background" || band == "pageFooter" || (band == "pageHeader" && !is_first_page)) {
        return take_running(run);
    }
    if (in_table && head_source_ != 0 && run[0].element->source == head_source_)
        return take_running(run);  // the head again
    if (band == "columnHeader") return take_head(run);
    if (band == "detail") return is_row_of_details(run) ? take_row(run) : take_flow(run);
    const bool is_low = on_one_line(run);
    if (band == "groupHeader" && !in_table && head_.empty() && is_low && run.size() > 2) return take_head(run);
    const bool in_rows = band == "groupHeader" || band == "groupFooter" || band == "columnFooter";
    if (in_rows && is_low && (in_table || !head_.empty())) return take_row(run);
    take_flow(run);
}

bool StructureFinder::is_row_of_details(const Leaves& run) const
{
    return table_ != StructurePart::kDocument || !head_.empty() || (run.size() > 1 && on_one_line(run));
}

void StructureFinder::take_running(const Leaves& run)
{
    for (const Leaf& leaf : run) {
        // Somebody who follows links must hear where they are.
        if (is_linked(*leaf.element)) {
            add_content(leaf, StructurePart::kDocument);
        } else {
            own(leaf, ElementOwner::kRunning);
        }
    }
}

void StructureFinder::take_head(const Leaves& run)
{
    take_running(std::exchange(head_, run));
    table_ = StructurePart::kDocument;
}

void StructureFinder::take_row(const Leaves& run)
{
    if (table_ == StructurePart::kDocument) open_table(run);
    add_row(run, false, source(run[0]).band == "groupHeader");
}

/// Of a title without marked headings, what is written largest.
const StructureFinder::Leaf* StructureFinder::title_of(const Leaves& run) const
{
    const std::string& band = source(run[0]).band;
    const auto is_marked = [](const Source& source) { return source.heading > 0; };
    if (last_heading_ > 0 || (band != "title" && band != "pageHeader") ||
        std::ranges::any_of(*document_->sources, is_marked)) {
        return nullptr;
    }
    const auto size = [](const Leaf& leaf) { return is_text(*leaf.element) ? leaf.element->style->font.size : 0; };
    const auto largest = std::ranges::max_element(run, {}, size);
    return size(*largest) > document_->default_font.size ? &*largest : nullptr;
}

void StructureFinder::take_flow(const Leaves& run)
{
    take_running(std::exchange(head_, {}));
    table_ = StructurePart::kDocument;
    const Leaf* title = title_of(run);
    for (const Leaf& leaf : run) {
        const uint8_t level = &leaf == title ? 1 : source(leaf).heading;
        if (level > 0 && is_text(*leaf.element)) {
            add_heading(leaf, level);
        } else {
            add_content(leaf, StructurePart::kDocument);
        }
    }
}

int32_t StructureFinder::add_heading(const Leaf& leaf, uint8_t level)
{
    last_heading_ = std::min<uint8_t>(level, static_cast<uint8_t>(last_heading_ + 1));  // none may be left out
    StructurePart part;
    part.role = PartRole::Heading;
    part.level = last_heading_;
    const int32_t index = add(std::move(part));
    own(leaf, index);
    return index;
}

void StructureFinder::open_table(const Leaves& run)
{
    columns_from(head_.empty() ? run : head_);
    StructurePart table;
    table.role = PartRole::Table;
    table_ = add(std::move(table));
    const Leaves head = std::exchange(head_, {});
    if (!head.empty()) add_row(head, true, false);
    head_source_ = head.empty() ? 0 : head[0].element->source;
}

/// The columns of a table are where its head has its captions; captions of two lines share one.
void StructureFinder::columns_from(const Leaves& run)
{
    columns_.clear();
    Leaves sorted = run;
    std::ranges::stable_sort(sorted, {}, [](const Leaf& leaf) { return leaf.place.x; });
    for (const Leaf& leaf : sorted) {
        const int32_t left = leaf.place.x, right = right_of(leaf.place);
        if (!columns_.empty()) {
            Column& last = columns_.back();
            const int32_t smaller = std::min(right - left, last.right - last.left);
            if (overlap(left, right, last.left, last.right) * 2 > smaller) {
                last.right = std::max(last.right, right);
                continue;
            }
        }
        columns_.push_back({left, right});
    }
}

/// The first column of a cell and how many it spans: those of which it covers more than half, or else the nearest.
std::pair<size_t, size_t> StructureFinder::columns_of(const Place& place) const
{
    const int32_t left = place.x, right = right_of(place);
    size_t first = columns_.size(), last = 0, best = 0;
    int32_t most = std::numeric_limits<int32_t>::min();
    for (size_t at = 0; at < columns_.size(); ++at) {
        const Column& column = columns_[at];
        const int32_t shared = overlap(left, right, column.left, column.right);
        if (shared * 2 > column.right - column.left) {
            first = std::min(first, at);
            last = at;
        }
        if (shared > most) {
            most = shared;
            best = at;
        }
    }
    if (first == columns_.size()) return {best, 1};
    return {first, last - first + 1};
}

/// Cells in the order of their columns; what stands below a cell is read with it, and what is as wide as several that
/// are taken begins another row. Columns that nothing stands in get an empty cell, so that all rows are alike.
void StructureFinder::add_row(const Leaves& run, bool is_head, bool heads_row)
{
    struct Cell {
        size_t first, span;
        Leaves content;
    };
    std::vector<Cell> cells;
    const auto flush = [&] {
        std::ranges::sort(cells, {}, &Cell::first);
        StructurePart row;
        row.role = PartRole::Row;
        row.parent = table_;
        const int32_t row_index = add(std::move(row));
        const auto add_cell = [&](size_t span) {
            StructurePart cell;
            cell.role = is_head || heads_row ? PartRole::HeadCell : PartRole::Cell;
            cell.heads_row = heads_row;
            cell.parent = row_index;
            cell.span = static_cast<uint16_t>(span);
            return add(std::move(cell));
        };
        size_t next = 0;
        for (const Cell& cell : cells) {
            for (; next < cell.first; ++next) add_cell(1);
            next = cell.first + cell.span;
            const int32_t index = add_cell(cell.span);
            const bool is_plain = cell.content.size() == 1 && is_text(*cell.content[0].element);
            for (const Leaf& leaf : cell.content) {
                if (is_plain) {
                    own(leaf, index);
                } else {
                    add_content(leaf, index);
                }
            }
        }
        for (; next < columns_.size(); ++next) add_cell(1);
        cells.clear();
    };
    for (const Leaf& leaf : run) {
        const auto [first, span] = columns_of(leaf.place);
        const auto meets = [first = first, end = first + span](const Cell& cell) {
            return cell.first < end && first < cell.first + cell.span;
        };
        const auto met = std::ranges::find_if(cells, meets);
        if (met == cells.end()) {
            cells.push_back({first, span, {leaf}});
        } else if (met->first == first && met->span >= span) {
            met->content.push_back(leaf);
        } else {
            flush();
            cells.push_back({first, span, {leaf}});
        }
    }
    flush();
}

int32_t StructureFinder::add_content(const Leaf& leaf, int32_t parent)
{
    StructurePart part;
    part.parent = parent;
    if (!is_text(*leaf.element)) {
        part.role = PartRole::Figure;
        part.place = leaf.place;
        part.description = description_of(*leaf.element);
    }
    const int32_t index = add(std::move(part));
    own(leaf, index);
    return index;
}

void StructureFinder::own(const Leaf& leaf, int32_t part)
{
    found_.owners[leaf.index] = {part, part >= 0 && !is_text(*leaf.element)};
}

int32_t StructureFinder::add(StructurePart part)
{
    found_.parts.push_back(std::move(part));
    return static_cast<int32_t>(found_.parts.size() - 1);
}

}  // namespace velora::engine
