#include "engine/fill/book/page_book.h"

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

Element* PageBook::find(const Waiting& waiting)
{
    Element* element = nullptr;
    if (waiting.page == number_) {
        element = &page_.elements[waiting.path.front()];
    } else {
        Held& held = held_[waiting.page - held_.front().number];
        const auto at = std::lower_bound(held.open.begin(), held.open.end(), waiting.path.front());
        element = &held.packed.kept[static_cast<size_t>(at - held.open.begin())];
    }
    for (size_t depth = 1; depth < waiting.path.size(); ++depth) {
        element = &std::get<Frame>(element->content).children[waiting.path[depth]];
    }
    return element;
}

size_t& PageBook::waiting_on(uint64_t page)
{
    return page == number_ ? waiting_here_ : held_[page - held_.front().number].waiting;
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
    }
    if (!due.empty()) release();
}

void PageBook::close_page()
{
    if (!has_page()) return;
    usual_size_ = page_.elements.size();
    if (waiting_here_ == 0 && held_.empty() && !hold_all_) {
        send(std::move(page_));
    } else {
        Held held;
        held.number = number_;
        held.waiting = waiting_here_;
        for (const auto& queue : queues_) {
            for (size_t index = queue.waiting.size(); index-- > 0 && queue.waiting[index].page == number_;) {
                held.open.push_back(queue.waiting[index].path.front());
            }
        }
        std::sort(held.open.begin(), held.open.end());
        held.open.erase(std::unique(held.open.begin(), held.open.end()), held.open.end());
        held.packed = packer_.pack(std::move(page_), held.open);
        held_.push_back(std::move(held));
    }
    page_ = Page();
    waiting_here_ = 0;
}

void PageBook::release()
{
    while (!hold_all_ && !held_.empty() && held_.front().waiting == 0) {
        send(unpacker_.unpack(std::move(held_.front().packed)));
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
