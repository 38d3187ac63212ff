#pragma once

#include <cmath>
#include <cstdint>
#include <span>
#include <string_view>

#include "session/session_state.h"
#include "values/fault.h"

namespace velora {

/// A number, or the fault that working it out ended in. The first fault wins; nothing is thrown for a null.
class Checked {
public:
    Checked(double value) : value_(value), fault_(std::isfinite(value) ? 0 : fault::kOverflow) {}
    /// A cell of a row: fault 94 for a null. @throws Fault 13 for text that is no number
    explicit Checked(const Value& cell)
        : value_(cell.is_null() ? 0 : to_number(cell)), fault_(cell.is_null() ? fault::kNull : 0)
    {
    }

    [[nodiscard]] int32_t fault() const { return fault_; }
    [[nodiscard]] double value() const { return value_; }
    /// The number where nothing guards the statement. @throws Fault
    [[nodiscard]] double raised() const
    {
        if (fault_ != 0) throw fault::of(fault_);
        return value_;
    }

    friend Checked operator*(Checked a, Checked b) { return joined(a, b, a.value_ * b.value_); }
    friend Checked operator-(Checked a, Checked b) { return joined(a, b, a.value_ - b.value_); }
    friend Checked operator+(Checked a, Checked b) { return joined(a, b, a.value_ + b.value_); }
    /// Nothing by nothing is an overflow, anything else by nothing a division by zero.
    friend Checked operator/(Checked a, Checked b)
    {
        if (a.fault_ == 0 && b.fault_ == 0 && b.value_ == 0) {
            return failed(a.value_ == 0 ? fault::kOverflow : fault::kDivisionByZero);
        }
        return joined(a, b, b.value_ == 0 ? 0 : a.value_ / b.value_);
    }
    [[nodiscard]] Checked absolute() const
    {
        Checked result = *this;
        result.value_ = std::abs(value_);
        return result;
    }
    static Checked failed(int32_t number)
    {
        Checked result = 0;
        result.fault_ = number;
        return result;
    }

private:
    static Checked joined(Checked a, Checked b, double value)
    {
        if (a.fault_ != 0) return a;
        if (b.fault_ != 0) return b;
        return value;
    }

    double value_;
    int32_t fault_;
};

/// What a statement that fills a field comes to: a value, a fault, or nothing to write.
class Outcome {
public:
    Outcome(Value value) : value_(std::move(value)) {}  // a null lands in the pipe as fault 94
    template <class T>
    requires std::constructible_from<Value, T> &&(!std::same_as<std::remove_cvref_t<T>, Value>)Outcome(T&& value)
        : value_(std::forward<T>(value))
    {
    }

    static Outcome failed(int32_t number)
    {
        Outcome result{Value()};
        result.fault_ = number;
        return result;
    }
    static Outcome unwritten()
    {
        Outcome result{Value()};
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
    [[nodiscard]] const Value& value() const { return value_; }

private:
    Value value_;
    int32_t fault_ = 0;
    bool writes_ = true;
};

/// The statements of one procedure: a fault of its tolerated set drops the one statement and is logged, any other
/// ends the procedure.
class Statements {
public:
    Statements(SessionState& state, std::span<const int32_t> tolerated) : state_(state), tolerated_(tolerated) {}

    void at_row(size_t row) { row_ = row; }

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
