#include "engine/fill/book/page_book.h"

#include "engine/page/page_copy.h"

namespace velora::engine {

void PageBook::begin_page()
{
    close_page();
    ++number_;
    page_.elements.reserve(usual_size_);
}

Range PageBook::range(int column, int top) const
{
    return {number_, column, top, top, page_.elements.size(), page_.elements.size()};
}

void PageBook::grow(Range& range, int bottom) const
{
    range.bottom = bottom;
    if (is_here(range)) range.end = page_.elements.size();
}

void PageBook::shift(const Range& range, int distance)
{
    if (!is_here(range)) return;
    for (size_t index = range.first; index < range.end; ++index) {
        page_.elements[index].place.y += distance;
    }
}

PageBook::Taken PageBook::take(const Range& range)
{
    Taken taken;
    if (!is_here(range) || range.first >= range.end) return taken;
    auto& elements = page_.elements;
    const auto from = elements.begin() + static_cast<std::ptrdiff_t>(range.first);
    const auto to = elements.begin() + static_cast<std::ptrdiff_t>(range.end);
    taken.elements.assign(std::make_move_iterator(from), std::make_move_iterator(to));
    elements.erase(from, to);
    const auto count = static_cast<uint32_t>(range.end - range.first);

    for (auto& queue : queues_) {
        auto& all = queue.waiting;
        for (size_t index = all.size(); index-- > 0 && all[index].page == number_;) {
            uint32_t& top = all[index].path.front();
            if (top >= range.end) {
                top -= count;
            } else if (top >= range.first) {
                top -= static_cast<uint32_t>(range.first);
                taken.waiting.emplace_back(queue.awaited, std::move(all[index]));
                all.erase(all.begin() + static_cast<std::ptrdiff_t>(index));
                --waiting_here_;
            }
        }
    }
    std::reverse(taken.waiting.begin(), taken.waiting.end());
    return taken;
}

void PageBook::put(Taken&& taken, int dx, int dy)
{
    const auto first = static_cast<uint32_t>(page_.elements.size());
    for (auto& element : taken.elements) {
        element.place.x += dx;
        element.place.y += dy;
        page_.elements.push_back(std::move(element));
    }
    for (auto& [awaited, waiting] : taken.waiting) {
        waiting.path.front() += first;
        await(awaited, std::move(waiting));
    }
}

PageBook::Queue& PageBook::queue(const Awaited& awaited)
{
    for (auto& queue : queues_) {
        if (queue.awaited == awaited) return queue;
    }
    return queues_.emplace_back(Queue{awaited, {}});
}

void PageBook::await(const Awaited& awaited, Waiting&& waiting)
{
    waiting.page = number_;
    ++waiting_here_;
    queue(awaited).waiting.push_back(std::move(waiting));
}

/// The element on the page that is it, or that it stands in.
Element& PageBook::outermost(const Waiting& waiting)
{
    if (waiting.page == number_) return page_.elements[waiting.path.front()];
    Held& page = held(waiting.page);
    const auto at = std::lower_bound(page.open.begin(), page.open.end(), waiting.path.front());
    return page.packed.kept[static_cast<size_t>(at - page.open.begin())];
}

Element* PageBook::find(const Waiting& waiting)
{
    Element* element = &outermost(waiting);
    for (size_t depth = 1; depth < waiting.path.size(); ++depth) {
        element = &std::get<Frame>(element->content).children[waiting.path[depth]];
    }
    return element;
}

size_t& PageBook::waiting_on(uint64_t page)
{
    return page == number_ ? waiting_here_ : held(page).waiting;
}

void PageBook::resolve(const Awaited& awaited, Moment moment)
{
    std::vector<Waiting> due;
    for (auto& queue : queues_) {
        if (queue.awaited == awaited) due.swap(queue.waiting);
    }
    for (auto& waiting : due) {
        waiting.resolver->resolve(waiting, *find(waiting), moment);
        --waiting_on(waiting.page);
        amend(waiting);
    }
    if (!due.empty()) release();
}

/// A page that has gone out comes to look different.
void PageBook::amend(const Waiting& waiting)
{
    if (waiting.page == number_ || !held(waiting.page).is_sent) return;
    open_sink_->amend(waiting.page - 1, waiting.path.front(), outermost(waiting));
}

void PageBook::close_page()
{
    if (!has_page()) return;
    usual_size_ = page_.elements.size();
    if (waiting_here_ == 0 && held_.empty() && !hold_all_) {
        send(std::move(page_));
    } else if (open_sink_ != nullptr && !hold_all_) {
        send_open_page();
    } else {
        hold_page();
    }
    page_ = Page();
    waiting_here_ = 0;
}

/// The elements of the page in hand that wait or hold what waits, in order.
std::vector<uint32_t> PageBook::waiting_here() const
{
    std::vector<uint32_t> open;
    for (const auto& queue : queues_) {
        for (size_t index = queue.waiting.size(); index-- > 0 && queue.waiting[index].page == number_;) {
            open.push_back(queue.waiting[index].path.front());
        }
    }
    std::sort(open.begin(), open.end());
    open.erase(std::unique(open.begin(), open.end()), open.end());
    return open;
}

void PageBook::hold_page()
{
    Held held{number_, {}, waiting_here(), waiting_here_, false};
    held.packed = packer_.pack(std::move(page_), held.open);
    held_.push_back(std::move(held));
}

void PageBook::send_open_page()
{
    Held held{number_, {}, waiting_here(), waiting_here_, true};
    for (const uint32_t index : held.open) held.packed.kept.push_back(copy_of(page_.elements[index]));
    held_.push_back(std::move(held));
    send(std::move(page_));
}

void PageBook::release()
{
    while (!hold_all_ && !held_.empty() && held_.front().waiting == 0) {
        if (!held_.front().is_sent) send(unpacker_.unpack(std::move(held_.front().packed)));
        held_.pop_front();
    }
}

void PageBook::send(Page&& page)
{
    if (!begun_) sink_.begin(document_);
    begun_ = true;
    sink_.page(std::move(page));
}

std::vector<Waiting> PageBook::take_waiting(const Awaited& awaited)
{
    std::vector<Waiting> waiting;
    waiting.swap(queue(awaited).waiting);
    return waiting;
}

void PageBook::finish()
{
    close_page();
    hold_all_ = false;
    while (!held_.empty()) {
        held_.front().waiting = 0;
        release();
    }
    if (!begun_) sink_.begin(document_);
    sink_.end();
}

}  // namespace velora::engine
