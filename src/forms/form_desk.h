#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "forms/controls/form.h"
#include "platform/printers.h"
#include "session/session_state.h"

namespace velora::forms {

class frmReport;
struct BuilderCall;

/// A kind of finder, with which a person picks one of many.
enum class FinderSort : uint8_t { Quote, Customer, AccountingCustomer };

/// What a form asks of the desk on which it lies.
class FormDesk {
public:
    FormDesk() = default;
    FormDesk(const FormDesk&) = delete;
    FormDesk& operator=(const FormDesk&) = delete;
    virtual ~FormDesk() = default;

    [[nodiscard]] virtual SessionState& state() const = 0;
    [[nodiscard]] virtual frmReport* report() const = 0;  ///< the selection form; null when it is not up

    /// The options without a mode, on top of the form that opens them and closed with it.
    virtual void show_options(WhichFrame frame, Form& owner) = 0;
    /// Asks a person which pages go to paper; none when that is cancelled. A script is not asked.
    virtual std::optional<PrintWish> choose_printing(size_t page_in_sight) = 0;
    virtual void show_emailer_modal() = 0;
    /// Loads a new form and shows it; returns when it is unloaded.
    virtual void show_modal(const std::shared_ptr<Form>& form) = 0;

    /// Answers in the place of a finder: whether it does, and the id or number, blank for a cancel.
    std::function<bool(FinderSort, std::string& answer)> answer_finder;
    /// A report builder is about to be called.
    std::function<void(const BuilderCall&)> on_call;
    /// The mail component told its progress (else -1) or a status.
    std::function<void(int32_t percent)> on_mail_event;
    /// Called often by long work, so that the windows stay alive.
    std::function<void()> while_waiting;
};

}  // namespace velora::forms
