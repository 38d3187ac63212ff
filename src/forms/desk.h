#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "forms/form_desk.h"
#include "platform/report_engine.h"

namespace velora::forms {

class frmConfigure;
class frmEmail;
class frmViewer;

/// The forms that are up, the one in front last. Forms are single instances but for viewers: one that is up and is
/// asked for again comes to the front as it is.
class Desk final : public Windows, public FormDesk {
public:
    explicit Desk(SessionState& state) : state_(state) {}
    ~Desk() override;

    [[nodiscard]] SessionState& state() const override { return state_; }

    void open_selection(SessionState& state) override;
    void open_options(SessionState& state, WhichFrame frame) override;
    void open_emailer(SessionState& state) override;

    void show_options(WhichFrame frame, Form& owner) override;
    void show_emailer_modal() override;
    std::optional<PrintWish> choose_printing(size_t page_in_sight) override;
    void show_viewer(std::shared_ptr<PageView> pages, const std::string& caption);
    /// A viewer of pages that are still being made; `show_viewer` gives it its caption when they are all there.
    frmViewer& begin_viewer(std::shared_ptr<PageView> pages);
    /// Loads a new form and shows it.
    void show(std::shared_ptr<Form> form, Form* owner = nullptr);
    void show_modal(const std::shared_ptr<Form>& form) override;

    [[nodiscard]] std::vector<Form*> forms() const;
    [[nodiscard]] Form* find(std::string_view name) const;
    [[nodiscard]] Form* front() const;  ///< null when none is up
    [[nodiscard]] Form* modal() const;  ///< the one that holds up all others; null when there is none
    [[nodiscard]] bool is_modal(const Form& form) const;
    void bring_to_front(Form& form);
    void close_all();
    /// Frees the forms that were unloaded; not to be called while a procedure of a form runs.
    void sweep() { gone_.clear(); }

    [[nodiscard]] frmReport* report() const override { return report_; }

    /// Runs the program until the form is unloaded, whatever it is that drives it. Without it a modal form is
    /// unloaded at once.
    std::function<void(Form&)> run_until_unloaded;
    /// Whether a person acts, who is asked how pages are printed.
    bool asks_for_printing = false;

    Notice<Form&> opened;
    Notice<Form&> closed;
    Notice<Form&> came_to_front;

private:
    struct Shown {
        std::shared_ptr<Form> form;
        Form* owner = nullptr;
    };
    void take_away(Form& form);
    Form& add(std::shared_ptr<Form> form, Form* owner);
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
