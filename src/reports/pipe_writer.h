#pragma once

#include <span>

#include "reports/pipe_layout.h"
#include "session/session_state.h"

namespace velora {

/// Fills the pipe of a run row by row. Each field is a statement of its own.
class PipeWriter {
public:
    /// @param rows  how many there will be, for the progress of the run; 0 where that is not known
    PipeWriter(SessionState& state, DataPipeRecordset& pipe, Statements& statements, size_t rows = 0)
        : state_(state), pipe_(pipe), statements_(statements), rows_(rows)
    {
    }

    /// Adds the row that `write` fills.
    template <class Write>
    void row(Write write)
    {
        statements_.at_row(++row_);
        pipe_.AddNew();
        write();
        pipe_.Update();
        statements_.at_row(0);
        if (row_ % kRowsBetweenProgress == 0 && state_.ports.user != nullptr) state_.ports.user->progress(row_, rows_);
    }

    template <class Source>
    void write(const Section<Source>& section, Source& source)
    {
        size_t field = section.first;
        for (const auto& column : section.columns) {
            statements_.attempt(column.name, [&] { put(field, column.value(source)); });
            ++field;
        }
    }

    /// The same where the values were worked out before; without any of them nothing is written.
    template <class Source>
    void write_values(const Section<Source>& section, std::span<const Value> values)
    {
        for (size_t at = 0; at < values.size(); ++at) {
            statements_.attempt(section.columns[at].name, [&] { put(section.first + at, Outcome::cell(values[at])); });
        }
    }

    /// As `write` where the whole document shares the values: on the first row, and carried to all others.
    template <class Source>
    void write_once(const Section<Source>& section, Source& source)
    {
        if (row_ > 1) return;
        write(section, source);
        for (size_t at = 0; at < section.columns.size(); ++at) pipe_.carry(section.first + at);
    }

private:
    static constexpr size_t kRowsBetweenProgress = 1'000;

    void put(size_t field, const Outcome& outcome)
    {
        if (!outcome.writes()) return;
        const int32_t number = outcome.fault() != 0 ? outcome.fault() : pipe_.put(field, outcome.value());
        statements_.settle(pipe_.fields()[field].name, number);
    }

    SessionState& state_;
    DataPipeRecordset& pipe_;
    Statements& statements_;
    size_t rows_;
    size_t row_ = 0;
};

}  // namespace velora
