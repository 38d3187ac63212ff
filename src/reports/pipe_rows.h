#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "values/value.h"

namespace velora {

/// Memory that grows by whole blocks and never moves what it holds.
template <class Item>
class Blocks {
public:
    static constexpr size_t kItemsInBlock = (size_t{1} << 16) / sizeof(Item);

    /// Room for `count` items side by side, at most a block's worth; answers where they start.
    size_t reserve(size_t count)
    {
        if (used_ % kItemsInBlock + count > kItemsInBlock) used_ += kItemsInBlock - used_ % kItemsInBlock;
        while (blocks_.size() * kItemsInBlock < used_ + count) {
            blocks_.push_back(std::make_unique_for_overwrite<Item[]>(kItemsInBlock));
        }
        const size_t start = used_;
        used_ += count;
        return start;
    }
    [[nodiscard]] Item* at(size_t position) { return &blocks_[position / kItemsInBlock][position % kItemsInBlock]; }
    [[nodiscard]] const Item* at(size_t position) const
    {
        return &blocks_[position / kItemsInBlock][position % kItemsInBlock];
    }
    [[nodiscard]] size_t bytes() const { return blocks_.size() * kItemsInBlock * sizeof(Item); }

private:
    std::vector<std::unique_ptr<Item[]>> blocks_;
    size_t used_ = 0;
};

/// Rows held as what changed from the row before: a mask of the changed fields and a cell for each of them.
/// A cell is eight bytes; the characters of a text stand elsewhere, behind their length.
class PipeRows {
public:
    explicit PipeRows(size_t fields) : mask_words_((fields + kBitsInWord - 1) / kBitsInWord) {}

    /// Adds a row. `changed` names fields in ascending order, `row` holds the values of all.
    void add(std::span<const uint16_t> changed, std::span<const Value> row);

    [[nodiscard]] size_t count() const { return rows_.size(); }

    /// Brings `row` from the row before to this one; for row 0 all of it has to be null.
    void apply(size_t number, std::span<Value> row) const;

    [[nodiscard]] size_t bytes() const;

private:
    static constexpr size_t kBitsInWord = 64;

    [[nodiscard]] uint64_t encode(const Value& value);
    void decode(uint64_t cell, Value& into) const;

    // Row n starts at the word rows_[n]: first its mask, then its cells. The top byte of a cell is its type.
    size_t mask_words_;
    std::vector<uint64_t> rows_;
    Blocks<uint64_t> words_;
    Blocks<char> texts_;
};

}  // namespace velora
