#include <algorithm>
#include <array>
#include <set>

#include "forms/finder_rows.h"
#include "gateway/view_reading.h"
#include "values/text.h"

namespace velora::forms {

namespace {

struct Column {
    std::string_view heading;
    std::string_view field;
};

constexpr auto kColumns = std::to_array<Column>({{"Customer Number", "IDCUST"},
                                                 {"Customer", "NAMECUST"},
                                                 {"Short Name", "TEXTSNAM"},
                                                 {"Contact", "NAMECTAC"},
                                                 {"City", "NAMECITY"}});

/// Rows of the customer view. It can be walked by number alone: in another order each page is picked out of one walk
/// over all rows, of which no more than the page is kept.
class ViewRows final : public FinderRows {
public:
    explicit ViewRows(SessionState& state) : state_(state) {}

    [[nodiscard]] std::vector<std::string> columns() const override
    {
        std::vector<std::string> headings;
        for (const Column& column : kColumns) headings.emplace_back(column.heading);
        return headings;
    }

    [[nodiscard]] Messenger messenger() const override { return ErrorACCPAC; }

    void start(const std::string& search, size_t column, bool descending) override
    {
        search_ = lower_ascii(trimmed(search));
        column_ = column;
        descending_ = descending;
        last_.clear();
        at_end_ = false;
        walk_again();
    }

    std::vector<FinderRow> next(size_t most) override
    {
        if (at_end_) return {};
        auto page = column_ == 0 ? next_by_number(most) : next_by_column(most);
        at_end_ = page.size() < most;
        return page;
    }

private:
    using Place = std::array<std::string, 2>;  // what decides the order: the text of the column, then the number

    void walk_again()
    {
        view_ = std::make_unique<OpenedView>(state_, "AR0024");
        view_->browse("", column_ != 0 || !descending_);
    }

    /// The next row of the walk that the search finds.
    bool step(FinderRow& row)
    {
        while (view_->fetch()) {
            row = {};
            bool found = search_.empty();
            for (const Column& column : kColumns) {
                row.cells.push_back(view_->text(column.field));
                found = found || lower_ascii(row.cells.back()).find(search_) != std::string::npos;
            }
            row.key = row.cells.front();
            if (found) return true;
        }
        return false;
    }

    std::vector<FinderRow> next_by_number(size_t most)
    {
        std::vector<FinderRow> page;
        for (FinderRow row; page.size() < most && step(row);) page.push_back(std::move(row));
        return page;
    }

    [[nodiscard]] bool comes_before(const Place& left, const Place& right) const
    {
        return descending_ ? right < left : left < right;
    }

    [[nodiscard]] Place place_of(const FinderRow& row) const { return {lower_ascii(row.cells.at(column_)), row.key}; }

    std::vector<FinderRow> next_by_column(size_t most)
    {
        walk_again();
        const auto in_order = [this](const FinderRow& left, const FinderRow& right) {
            return comes_before(place_of(left), place_of(right));
        };
        std::multiset<FinderRow, decltype(in_order)> page(in_order);
        for (FinderRow row; step(row);) {
            if (!last_.empty() && !comes_before(last_.front(), place_of(row))) continue;
            page.insert(std::move(row));
            if (page.size() > most) page.erase(std::prev(page.end()));
        }
        std::vector<FinderRow> rows(page.begin(), page.end());
        if (!rows.empty()) last_ = {place_of(rows.back())};
        return rows;
    }

    SessionState& state_;
    std::unique_ptr<OpenedView> view_;
    std::string search_;
    size_t column_ = 0;
    bool descending_ = false;
    bool at_end_ = false;
    std::vector<Place> last_;  ///< of the page before; empty at first
};

}  // namespace

std::unique_ptr<FinderRows> accounting_customer_rows(SessionState& state)
{
    return std::make_unique<ViewRows>(state);
}

}  // namespace velora::forms
