#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "reports/checked.h"
#include "session/session_state.h"
#include "values/fault.h"
#include "values/text.h"

namespace velora {

/// What a statement that fills a field comes to: a value, a fault, or nothing to write.
class Outcome {
public:
    Outcome(Value value) : value_(std::move(value)) {}  // a null lands in the pipe as fault 94
    template <class T>
    requires std::constructible_from<Value, T> &&(!std::same_as<T, Value>)Outcome(T value) : value_(std::move(value)) {}

    /// A cell that stands where it is until the statement is done, so that its text is copied once and not twice.
    static Outcome cell(const Value& cell)
    {
        Outcome result;
        result.cell_ = &cell;
        return result;
    }
    static Outcome failed(int32_t number)
    {
        Outcome result;
        result.fault_ = number;
        return result;
    }
    static Outcome unwritten()
    {
        Outcome result;
        result.writes_ = false;
        return result;
    }
    /// The value that `make` builds of the number, or the number's fault.
    template <class Make>
    static Outcome of(Checked number, Make make)
    {
        return number.fault() != 0 ? failed(number.fault()) : Outcome(make(number.value()));
    }

    [[nodiscard]] bool writes() const { return writes_; }
    [[nodiscard]] int32_t fault() const { return fault_; }
    [[nodiscard]] const Value& value() const { return cell_ != nullptr ? *cell_ : value_; }

private:
    Outcome() = default;

    Value value_;
    const Value* cell_ = nullptr;
    int32_t fault_ = 0;
    bool writes_ = true;
};

/// The cell without blanks at both ends; a null stays a null.
inline Outcome trimmed_cell(const Value& cell)
{
    const auto* text = cell.get_if<std::string>();
    const bool stands_as_it_is = text != nullptr ? trimmed(*text).size() == text->size() : cell.is_null();
    return stands_as_it_is ? Outcome::cell(cell) : Outcome(trimmed_text(cell));
}

/// The statements of one procedure: a fault of its tolerated set drops the one statement and is logged, any other
/// ends the procedure.
class Statements {
public:
    Statements(SessionState& state, std::span<const int32_t> tolerated) : state_(state), tolerated_(tolerated) {}

    void at_row(size_t row) { row_ = row; }  ///< of the pipe, from 1; 0 outside a row

    /// Runs one statement; false when it fell away.
    template <class Work>
    bool attempt(std::string_view name, Work work)
    {
        try {
            work();
            return true;
        } catch (const Fault& caught) {
            if (!tolerates(caught.number())) throw;
            state_.log.tolerated(row_, name, caught.number());
            return false;
        }
    }

    /// The same for a statement that answered with a fault number instead of raising it.
    void settle(std::string_view name, int32_t number)
    {
        if (number == 0) return;
        if (!tolerates(number)) throw fault::of(number, std::string(name));
        state_.log.tolerated(row_, name, number);
    }

private:
    [[nodiscard]] bool tolerates(int32_t number) const
    {
        return std::find(tolerated_.begin(), tolerated_.end(), number) != tolerated_.end();
    }

    SessionState& state_;
    std::span<const int32_t> tolerated_;
    size_t row_ = 0;
};

}  // namespace velora
