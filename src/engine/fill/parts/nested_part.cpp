#include "engine/fill/parts/nested_part.h"

#include <algorithm>

namespace velora::engine {

namespace {

using Content = decltype(Element::content);

Element copy_of(const Element& element);

Content copy_of(const Text& text)
{
    Text copy;
    copy.text = text.text;
    copy.text_height = text.text_height;
    if (text.detail) copy.detail = std::make_unique<TextDetail>(*text.detail);
    return copy;
}

Content copy_of(const Frame& frame)
{
    Frame copy;
    for (const auto& child : frame.children) copy.children.push_back(copy_of(child));
    return copy;
}

Content copy_of(const auto& content)
{
    return content;
}

Element copy_of(const Element& element)
{
    Element copy;
    copy.place = element.place;
    copy.style = element.style;
    copy.source = element.source;
    copy.begins_band = element.begins_band;
    copy.content = std::visit([](const auto& content) { return copy_of(content); }, element.content);
    return copy;
}

/// Whether it looks the same each time that it is printed.
bool is_constant(const ContainerPlan& content)
{
    return std::ranges::all_of(content.parts, [](const PartPlan& part) {
        if (part.print_when || part.style_expression) return false;
        using enum PartPlan::Kind;
        if (part.kind == Frame) return part.children && is_constant(*part.children);
        return part.kind == StaticText || part.kind == Line || part.kind == Rectangle || part.kind == Ellipse;
    });
}

bool is_constant(const BandPlan& band)
{
    return !band.present || (!band.print_when && is_constant(band.content));
}

int bottom_of(const Element& element)
{
    return element.place.y + element.place.height;
}

}  // namespace

void NestedPart::evaluate(Moment moment)
{
    reset();
    evaluate_print_when(moment);
    at_ = 0;
    print_ = {};
    handed_back_ = false;
    nested_ = print_when_holds_ ? plan_of(run_, *plan_.nested, moment) : nullptr;
    if (nested_ == nullptr) return;
    dress_ = &dress(moment);
    print_ = fill_nested(run_, *nested_, moment);
    find_ends();
    sort_by_row();
    find_heading();
    find_footing();
    add_sources();
    take_sources(print_.elements);
}

void NestedPart::add_sources()
{
    KnownSources& known = known_sources_[nested_];
    if (print_.sources != known.all) {
        auto& sources = *run_.document.sources;
        known.first = static_cast<uint32_t>(sources.size());
        sources.insert(sources.end(), print_.sources.begin() + 1, print_.sources.end());
        known.all = print_.sources;
    }
    first_source_ = known.first;
}

void NestedPart::take_sources(std::vector<Element>& elements) const
{
    for (auto& element : elements) {
        if (element.source > 0) element.source += first_source_ - 1;
        if (auto* frame = std::get_if<Frame>(&element.content)) take_sources(frame->children);
    }
}

void NestedPart::find_heading()
{
    heading_.clear();
    heading_height_ = 0;
    int end = 0;
    for (size_t index = 0; index < print_.elements.size(); ++index) {
        const Element& element = print_.elements[index];
        if (element.source >= nested_->report->sources.size()) continue;  // of a report inside this one
        const std::string& band = print_.sources[element.source].band;
        if (band != "pageHeader" && band != "columnHeader") continue;
        heading_top_ = heading_.empty() ? element.place.y : std::min(heading_top_, element.place.y);
        end = std::max(end, bottom_of(element));
        heading_.push_back(index);
    }
    if (!heading_.empty()) heading_height_ = end - heading_top_;
}

/// The feet of a nested report's pages and columns follow its rows. Those that hold values are printed at its end only:
/// what they would show on the pages before is not known.
void NestedPart::find_footing()
{
    footing_.clear();
    footing_height_ = 0;
    const ReportPlan& report = *nested_->report;
    if (!is_constant(report.column_footer) || !is_constant(report.page_footer)) return;
    int top = print_.height;
    for (size_t index = 0; index < print_.elements.size(); ++index) {
        const Element& element = print_.elements[index];
        if (element.source >= report.sources.size()) continue;  // of a report inside this one
        const std::string& band = print_.sources[element.source].band;
        if (band != "columnFooter" && band != "pageFooter") continue;
        top = std::min(top, element.place.y);
        footing_.push_back(index);
    }
    if (footing_.empty()) return;
    const auto behind = std::ranges::upper_bound(row_ends_, top);
    footing_top_ = behind == row_ends_.begin() ? 0 : *(behind - 1);
    const auto below = std::ranges::count_if(print_.elements,
                                             [&](const Element& element) { return bottom_of(element) > footing_top_; });
    if (static_cast<size_t>(below) == footing_.size()) footing_height_ = print_.height - footing_top_;
}

void NestedPart::find_ends()
{
    // an end holds when nothing that begins above it reaches below
    std::vector<std::pair<int, int>> spans;
    for (const auto& element : print_.elements) spans.emplace_back(element.place.y, bottom_of(element));
    std::sort(spans.begin(), spans.end());
    element_ends_.clear();
    int reached = 0;
    for (const auto& [top, bottom] : spans) {
        if (reached > 0 && top >= reached) element_ends_.push_back(top);
        reached = std::max(reached, bottom);
    }
    element_ends_.push_back(print_.height);
    row_ends_.clear();
    auto& ends = print_.row_ends;
    std::sort(ends.begin(), ends.end());
    size_t span = 0;
    reached = 0;
    for (const int end : ends) {
        for (; span < spans.size() && spans[span].first < end; ++span) reached = std::max(reached, spans[span].second);
        if (reached <= end && end > 0 && end < print_.height) row_ends_.push_back(end);
    }
    row_ends_.push_back(print_.height);
}

void NestedPart::sort_by_row()
{
    const auto row = [&](size_t index) {
        const auto end = std::upper_bound(row_ends_.begin(), row_ends_.end(), print_.elements[index].place.y);
        return end == row_ends_.end() ? print_.height : *end;
    };
    std::vector<std::pair<int, size_t>> order;
    for (size_t index = 0; index < print_.elements.size(); ++index) order.emplace_back(row(index), index);
    std::sort(order.begin(), order.end());
    std::vector<Element> sorted;
    std::vector<size_t> now(order.size());
    row_of_.clear();
    for (const auto& [end, index] : order) {
        now[index] = sorted.size();
        sorted.push_back(std::move(print_.elements[index]));
        row_of_.push_back(end);
    }
    print_.elements = std::move(sorted);
    waiting_.clear();
    for (auto& waiting : print_.waiting) {
        const size_t index = now[waiting.path.front()];
        waiting_[index].push_back(std::move(waiting));
    }
    print_.waiting.clear();
}

void NestedPart::rewind()
{
    at_ = 0;
}

/// The last end that leaves the piece in the room; where the piece begins when there is none.
int NestedPart::last_end(const std::vector<int>& ends, int room) const
{
    const auto behind = std::upper_bound(ends.begin(), ends.end(), at_ + room);
    return behind == ends.begin() ? at_ : std::max(at_, *(behind - 1));
}

/// @return whether something can be printed in the room
bool NestedPart::choose_end(int room, bool continuing)
{
    next_ = print_.height;
    if (print_.height - at_ <= room) return next_ > at_;
    room -= footing_height_;
    next_ = last_end(row_ends_, room);
    if (next_ > at_) return true;
    const model::PageLayout& page = run_.plan.definition->page;
    const int next_row = *std::upper_bound(row_ends_.begin(), row_ends_.end(), at_);
    const bool higher_than_a_page = next_row - at_ > page.height - page.top - page.bottom - heading() - footing_height_;
    if (run_.overflow_allowed && !higher_than_a_page) return false;
    next_ = last_end(element_ends_, room);
    if (!run_.overflow_allowed) next_ = print_.height;
    if (next_ == at_ && continuing) {
        // a new page gave no more room; what comes behind still has its turn
        next_ = *std::upper_bound(element_ends_.begin(), element_ends_.end(), at_);
        run_.tell("a row of height " + std::to_string(next_ - at_) + " does not fit on its page; it is cut");
    }
    return next_ > at_;
}

bool NestedPart::prepare(int available, bool continuing)
{
    const bool goes_over = prepare_piece(available, continuing);
    if (!goes_over) hand_back();
    return goes_over;
}

/// The variables have what the nested report gives back as soon as the last of it is placed: what is evaluated later
/// sees it, the rest of the band does not.
void NestedPart::hand_back()
{
    if (nested_ == nullptr || std::exchange(handed_back_, true)) return;
    for (size_t at = 0; at < print_.returned.size(); ++at) {
        const ReturnPlan& value = nested_->returns[at];
        run_.rows.variables().take(value.to, print_.returned[at], value.calculation);
    }
}

bool NestedPart::prepare_piece(int available, bool continuing)
{
    if (!begin_prepare()) return false;
    if (continuing && at_ >= print_.height && source().print_when_detail_overflows) rewind();
    if (at_ >= print_.height) {
        prints = false;
        return false;
    }
    const int room = available - relative_y - heading();
    if (room <= 0 || !choose_end(room, continuing)) {
        prints = false;
        return true;
    }
    const bool goes_over = next_ < print_.height;
    set_prepare_height(goes_over ? room + heading() : heading() + next_ - at_);
    return goes_over;
}

void NestedPart::emit(Emission& emission)
{
    std::vector<Element> piece;
    std::vector<size_t> indices;  // of the piece's elements in the print
    const auto add_copy = [&](size_t index, int dy) {
        piece.push_back(copy_of(print_.elements[index]));
        piece.back().place.y += dy;
        indices.push_back(index);
    };
    if (heading() > 0) {
        for (const size_t index : heading_) add_copy(index, -heading_top_);
    }
    const bool last = next_ >= print_.height;
    const auto first = std::upper_bound(row_of_.begin(), row_of_.end(), at_);
    for (auto index = static_cast<size_t>(first - row_of_.begin()); index < row_of_.size(); ++index) {
        const Element& element = print_.elements[index];
        if (!last && index > 0 && row_of_[index - 1] >= next_ && row_of_[index] > row_of_[index - 1]) break;
        if (element.place.y < at_ || (element.place.y >= next_ && !last)) continue;
        add_copy(index, heading() - at_);
    }
    if (!last && footing_height_ > 0) {
        for (const size_t index : footing_) add_copy(index, heading() + next_ - at_ - footing_top_);
    }
    std::vector<uint32_t> path = emission.path;
    uint32_t before = 0;
    if (nested_->framed) {
        Element& frame = add(emission, dress_->style);
        frame.content = Frame{std::move(piece)};
        path.push_back(static_cast<uint32_t>(emission.elements->size() - 1));
    } else {
        before = static_cast<uint32_t>(emission.elements->size());
        for (auto& element : piece) {
            element.place.x += emission.x + x_;
            element.place.y += emission.y + relative_y;
            emission.width = std::max(emission.width, element.place.x - emission.x + element.place.width);
            emission.elements->push_back(std::move(element));
        }
    }
    hand_on_waiting(emission.book, path, before, indices);
    at_ = next_;
    ++run_.progress;
}

void NestedPart::hand_on_waiting(PageBook& book, const std::vector<uint32_t>& path, uint32_t first,
                                 const std::vector<size_t>& indices) const
{
    if (waiting_.empty()) return;
    for (size_t at = 0; at < indices.size(); ++at) {
        const auto found = waiting_.find(indices[at]);
        if (found == waiting_.end()) continue;
        for (Waiting waiting : found->second) {
            const std::vector<uint32_t> within(waiting.path.begin() + 1, waiting.path.end());
            waiting.path = path;
            waiting.path.push_back(first + static_cast<uint32_t>(at));
            waiting.path.insert(waiting.path.end(), within.begin(), within.end());
            book.await({model::EvaluationTime::Master, kNoGroup, nullptr}, std::move(waiting));
        }
    }
}

}  // namespace velora::engine
