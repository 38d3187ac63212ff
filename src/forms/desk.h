#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "forms/controls/form.h"
#include "platform/report_engine.h"
#include "session/session_state.h"

namespace velora::forms {

class frmConfigure;
class frmEmail;
class frmReport;
struct BuilderCall;

/// A kind of finder, with which a person picks one of many.
enum class FinderSort : uint8_t { Quote, Customer, AccountingCustomer };

/// The forms that are up, the one in front last. Forms are single instances but for viewers: one that is up and is
/// asked for again comes to the front as it is.
class Desk final : public Windows {
public:
    explicit Desk(SessionState& state) : state_(state) {}
    ~Desk() override;

    [[nodiscard]] SessionState& state() const { return state_; }

    void open_selection(SessionState& state) override;
    void open_options(SessionState& state, WhichFrame frame) override;
    void open_emailer(SessionState& state) override;

    /// The options without a mode, on top of the form that opens them and closed with it.
    void show_options(WhichFrame frame, Form& owner);
    void show_emailer_modal();
    void show_viewer(std::shared_ptr<PageView> pages, const std::string& caption);
    /// Loads a new form and shows it. `show_modal` returns when it is unloaded.
    void show(std::shared_ptr<Form> form, Form* owner = nullptr);
    void show_modal(const std::shared_ptr<Form>& form);

    [[nodiscard]] std::vector<Form*> forms() const;
    [[nodiscard]] Form* find(std::string_view name) const;
    [[nodiscard]] Form* front() const;  ///< null when none is up
    [[nodiscard]] Form* modal() const;  ///< the one that holds up all others; null when there is none
    [[nodiscard]] bool is_modal(const Form& form) const;
    void bring_to_front(Form& form);
    void close_all();
    /// Frees the forms that were unloaded; not to be called while a procedure of a form runs.
    void sweep() { gone_.clear(); }

    [[nodiscard]] frmReport* report() const { return report_; }

    /// Runs the program until the form is unloaded, whatever it is that drives it. Without it a modal form is
    /// unloaded at once.
    std::function<void(Form&)> run_until_unloaded;
    /// Answers in the place of a finder: whether it does, and the id or number, blank for a cancel.
    std::function<bool(FinderSort, std::string& answer)> answer_finder;
    /// A report builder is about to be called.
    std::function<void(const BuilderCall&)> on_call;
    /// The mail component told its progress (else -1) or a status.
    std::function<void(int32_t percent)> on_mail_event;
    /// Called often by long work, so that the windows stay alive.
    std::function<void()> while_waiting;

    Notice<Form&> opened;
    Notice<Form&> closed;
    Notice<Form&> came_to_front;

private:
    struct Shown {
        std::shared_ptr<Form> form;
        Form* owner = nullptr;
    };
    void take_away(Form& form);
    void run_modal(Form& form);

    SessionState& state_;
    std::vector<Shown> shown_;  // from back to front
    std::vector<Form*> modal_;
    std::vector<std::shared_ptr<Form>> gone_;
    frmReport* report_ = nullptr;
    frmConfigure* options_ = nullptr;
    frmEmail* emailer_ = nullptr;
    int viewers_ = 0;
};

}  // namespace velora::forms
