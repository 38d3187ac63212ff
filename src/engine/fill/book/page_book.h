#pragma once

#include <deque>
#include <memory>
#include <vector>

#include "engine/definition/model.h"
#include "engine/fill/book/held_page.h"
#include "engine/fill/rows/moments.h"
#include "engine/page/page.h"

namespace velora::engine {

/// A run of elements on the page that is being filled, of one column and from `top` to `bottom`.
struct Range {
    uint64_t page = 0;
    int column = 0;
    int top = 0;
    int bottom = 0;
    size_t first = 0;
    size_t end = 0;
};

/// When a waiting element gets its value.
struct Awaited {
    model::EvaluationTime time = model::EvaluationTime::Now;
    int group = -1;              ///< for `Group`
    const void* band = nullptr;  ///< for `Band`
    bool operator==(const Awaited&) const = default;
};

struct Waiting;

/// Gives an element its value that was printed before the value was there.
class Resolver {
public:
    virtual void resolve(Waiting& waiting, Element& element, Moment moment) = 0;

protected:
    ~Resolver() = default;
};

/// An element on a page that waits for its value.
struct Waiting {
    Resolver* resolver = nullptr;
    uint64_t page = 0;
    std::vector<uint32_t> path;   ///< index on the page, then within the frames
    std::shared_ptr<void> notes;  ///< what the part wants to remember until then
};

/// A sink to which a page comes as soon as it is full, with the places empty whose values come later.
class OpenPageSink : public PageSink {
public:
    /// An element of a page that came has got its value.
    /// @param page  from 0; @param index  of the element on the page
    virtual void amend(size_t page, uint32_t index, const Element& element) = 0;
};

/// The pages of a run: the one that is being filled, and those behind it that wait for a value. What waits for
/// nothing goes to the sink at once, and to an `OpenPageSink` the others too: then only the elements that
/// wait stay here.
class PageBook {
public:
    PageBook(PageSink& sink, Document& document)
        : sink_(sink), open_sink_(dynamic_cast<OpenPageSink*>(&sink)), document_(document)
    {
    }

    /// Holds back all pages until `finish`; for a page whose height is known at the end only.
    void hold_all() { hold_all_ = true; }

    void begin_page();
    [[nodiscard]] bool has_page() const { return number_ > 0; }
    [[nodiscard]] uint64_t page_number() const { return number_; }
    std::vector<Element>& elements() { return page_.elements; }

    [[nodiscard]] Range range(int column, int top) const;
    [[nodiscard]] bool is_here(const Range& range) const { return range.page == number_; }
    void grow(Range& range, int bottom) const;
    void shift(const Range& range, int distance);

    /// Elements taken off the page, with what waits among them.
    struct Taken {
        std::vector<Element> elements;
        std::vector<std::pair<Awaited, Waiting>> waiting;  ///< paths count from the first element taken
    };
    Taken take(const Range& range);
    void put(Taken&& taken, int dx, int dy);

    void await(const Awaited& awaited, Waiting&& waiting);
    /// Has every element that waits for this get its value of the moment.
    void resolve(const Awaited& awaited, Moment moment);

    /// What still waits for this, for somebody else to give it a value; nothing of it stays here.
    std::vector<Waiting> take_waiting(const Awaited& awaited);

    /// Sends what is left to the sink.
    void finish();

private:
    struct Held {
        uint64_t number = 0;
        PackedPage packed;
        std::vector<uint32_t> open;  ///< page indices of the first elements in `packed.kept`
        size_t waiting = 0;
        bool is_sent = false;  ///< the sink has the page; `packed.kept` alone is here
    };
    struct Queue {
        Awaited awaited;
        std::vector<Waiting> waiting;
    };

    void close_page();
    void hold_page();
    void send_open_page();
    [[nodiscard]] std::vector<uint32_t> waiting_here() const;
    Held& held(uint64_t page) { return held_[page - held_.front().number]; }
    void amend(const Waiting& waiting);
    Element& outermost(const Waiting& waiting);
    void release();
    void send(Page&& page);
    Queue& queue(const Awaited& awaited);
    Element* find(const Waiting& waiting);
    size_t& waiting_on(uint64_t page);

    PageSink& sink_;
    OpenPageSink* open_sink_;  ///< null for one that wants finished pages only
    Document& document_;
    Page page_;
    uint64_t number_ = 0;
    size_t waiting_here_ = 0;
    size_t usual_size_ = 0;
    bool begun_ = false;
    bool hold_all_ = false;
    std::deque<Held> held_;
    std::deque<Queue> queues_;
    PagePacker packer_;
    PageUnpacker unpacker_;
};

}  // namespace velora::engine
