#pragma once

#include "forms/controls/control.h"
#include "values/date_time.h"

namespace velora::forms {

/// A month to pick a date from.
class MonthView final : public Control {
public:
    using Control::Control;

    [[nodiscard]] const DateTime& date() const { return date_; }
    /// By a procedure: fires nothing.
    void set_date(const DateTime& date);
    /// By a person: fires `date_click`, also on the date that is shown already.
    void pick(const DateTime& date);

    const Control* beside = nullptr;  ///< the box for which the view was opened

    Event date_click{form()};
    void accept(ControlVisitor& visitor) const override;

private:
    DateTime date_;
};

}  // namespace velora::forms
