#pragma once

#include <cmath>
#include <cstdint>

#include "values/fault.h"
#include "values/value.h"

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

}  // namespace velora
