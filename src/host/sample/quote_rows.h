#pragma once

#include <cstdint>

#include "host/sample/quotes.h"
#include "host/sample/row_writer.h"

namespace velora::sample {

/// The rows that belong to quotes, with the keys that go on counting from quote to quote.
class QuoteRows {
public:
    explicit QuoteRows(RowWriter& out) : out_(out) {}
    void write(const Quote& quote);

private:
    void write_addresses(const Quote& quote);
    void write_line(const Quote& quote, const Line& line, int number);
    void write_remarks(const Quote& quote, const Line& line, int number);
    void write_charges(const Quote& quote);
    void write_loss(const Quote& quote);

    RowWriter& out_;
    int32_t bill_to_ = 0;
    int32_t ship_to_ = 0;
    int32_t charge_ = 0;
};

}  // namespace velora::sample
