#include "engine/fill/book/page_store.h"

#include <algorithm>
#include <cstring>

#include "engine/page/page_copy.h"

namespace velora::engine {

namespace {

/// In front of an amended element.
struct AmendmentHead {
    uint64_t before = 0;
    uint32_t index = 0;
    uint32_t size = 0;
};

void put_number(std::string& bytes, size_t number)
{
    const auto told = static_cast<uint32_t>(number);
    bytes.append(reinterpret_cast<const char*>(&told), sizeof told);
}

size_t take_number(std::string_view& bytes)
{
    uint32_t told = 0;
    std::memcpy(&told, bytes.data(), sizeof told);
    bytes.remove_prefix(sizeof told);
    return told;
}

}  // namespace

void PageStore::add(Page&& page)
{
    if (last_->size() == kBlock) pack_last();
    last_->push_back(std::move(page));
    states_.emplace_back();
}

void PageStore::pack_last()
{
    std::string bytes;
    PagePacker packer;
    for (Page& page : *last_) {
        const PackedPage packed = packer.pack(std::move(page), {});
        put_number(bytes, packed.bytes.size());
        bytes += packed.bytes;
        put_number(bytes, packed.kept.size());
        for (const Element& element : packed.kept) put_element(bytes, element, pictures_);
    }
    packed_.push_back({bytes_.append(bytes), static_cast<uint32_t>(bytes.size())});
    last_ = std::make_shared<Block>();
}

std::shared_ptr<PageStore::Block> PageStore::unpacked(size_t number) const
{
    const std::string read = bytes_.read(packed_[number].at, packed_[number].size);
    std::string_view bytes = read;
    PageUnpacker unpacker;
    auto pages = std::make_shared<Block>();
    for (size_t at = number * kBlock; at < (number + 1) * kBlock; ++at) {
        const size_t size = take_number(bytes);
        PackedPage packed{std::string(bytes.substr(0, size)), {}};
        bytes.remove_prefix(size);
        for (size_t kept = take_number(bytes); kept > 0; --kept) {
            packed.kept.push_back(take_element(bytes, pictures_));
        }
        pages->push_back(unpacker.unpack(std::move(packed)));
        take_amendments(pages->back(), states_[at].latest);
    }
    return pages;
}

/// From the latest back to the first; what is amended twice keeps the later one.
void PageStore::take_amendments(Page& page, uint64_t latest) const
{
    std::vector<uint32_t> taken;
    while (latest != kNone) {
        AmendmentHead head;
        std::memcpy(&head, bytes_.read(latest, sizeof head).data(), sizeof head);
        if (std::ranges::find(taken, head.index) == taken.end()) {
            const std::string read = bytes_.read(latest + sizeof head, head.size);
            std::string_view bytes = read;
            page.elements.at(head.index) = take_element(bytes, pictures_);
            taken.push_back(head.index);
        }
        latest = head.before;
    }
}

std::shared_ptr<PageStore::Block> PageStore::block(size_t number) const
{
    const auto known = std::ranges::find(known_, number, &KnownBlock::number);
    KnownBlock found = known != known_.end() ? *known : KnownBlock{number, unpacked(number)};
    if (known != known_.end()) known_.erase(known);
    known_.push_front(std::move(found));
    if (known_.size() > kMostBlocks) known_.pop_back();
    return known_.front().pages;
}

std::shared_ptr<const Page> PageStore::page(size_t number) const
{
    const auto pages = is_last(number) ? last_ : block(number / kBlock);
    return {pages, &pages->at(number % kBlock)};
}

void PageStore::amend(size_t page, uint32_t index, const Element& element)
{
    PageState& state = states_.at(page);
    ++state.revision;
    if (is_last(page)) {
        last_->at(page % kBlock).elements.at(index) = copy_of(element);
        return;
    }
    std::string bytes;
    put_element(bytes, element, pictures_);
    const AmendmentHead head{state.latest, index, static_cast<uint32_t>(bytes.size())};
    bytes.insert(0, reinterpret_cast<const char*>(&head), sizeof head);
    state.latest = bytes_.append(bytes);
    const auto known = std::ranges::find(known_, page / kBlock, &KnownBlock::number);
    if (known != known_.end()) known->pages->at(page % kBlock).elements.at(index) = copy_of(element);
}

}  // namespace velora::engine
