#include "forms/desk.h"

#include <algorithm>

#include "forms/frm_configure.h"
#include "forms/frm_email.h"
#include "forms/frm_print.h"
#include "forms/frm_report.h"
#include "forms/frm_viewer.h"
#include "session/error_messengers.h"

namespace velora::forms {

Desk::~Desk()
{
    close_all();
}

void Desk::open_selection(SessionState&)
{
    if (report_ != nullptr) return bring_to_front(*report_);
    const auto form = std::make_shared<frmReport>(*this);
    report_ = form.get();
    show(form);
}

void Desk::open_options(SessionState&, WhichFrame frame)
{
    if (options_ == nullptr) {
        const auto form = std::make_shared<frmConfigure>(*this, frame);
        options_ = form.get();
        return show_modal(form);
    }
    options_->show_pane(frame);
    run_modal(*options_);
}

void Desk::show_options(WhichFrame frame, Form& owner)
{
    if (options_ == nullptr) {
        const auto form = std::make_shared<frmConfigure>(*this, frame);
        options_ = form.get();
        return show(form, &owner);
    }
    options_->show_pane(frame);
    bring_to_front(*options_);
}

void Desk::open_emailer(SessionState&)
{
    if (emailer_ != nullptr) return bring_to_front(*emailer_);
    const auto form = std::make_shared<frmEmail>(*this);
    emailer_ = form.get();
    show(form);
}

std::optional<PrintWish> Desk::choose_printing(size_t page_in_sight)
{
    if (!asks_for_printing) return PrintWish();
    PrintQuestion question{.printers = {}, .page = page_in_sight};
    for (const Printer& printer : state_.ports.printers->list()) question.printers.push_back(printer.DeviceName);
    const auto asked = std::make_shared<frmPrint>(state_, question);
    show_modal(asked);
    return asked->wish();
}

void Desk::show_emailer_modal()
{
    if (emailer_ != nullptr) return run_modal(*emailer_);
    const auto form = std::make_shared<frmEmail>(*this);
    emailer_ = form.get();
    show_modal(form);
}

void Desk::show_viewer(std::shared_ptr<PageView> pages, const std::string& caption)
{
    for (const Shown& shown : shown_) {
        auto* viewer = dynamic_cast<frmViewer*>(shown.form.get());
        if (viewer != nullptr && viewer->pages() == pages.get()) return viewer->set_caption(caption);
    }
    show(std::make_shared<frmViewer>(*this, ++viewers_, std::move(pages), caption));
}

frmViewer& Desk::begin_viewer(std::shared_ptr<PageView> pages)
{
    const auto viewer = std::make_shared<frmViewer>(*this, ++viewers_, std::move(pages), "Report Viewer");
    viewer->expect_more();
    show(viewer);
    return *viewer;
}

void Desk::show(std::shared_ptr<Form> form, Form* owner)
{
    came_to_front.tell(add(std::move(form), owner));
}

Form& Desk::add(std::shared_ptr<Form> form, Form* owner)
{
    Form& shown = *form;
    shown.tell_fault = [this](const std::string& procedure, const Fault& caught) {
        ErrorMessenger(state_, caught.number(), caught.description(), procedure);
    };
    shown.take_away = [this, &shown] { take_away(shown); };
    shown.load();
    shown_.push_back({std::move(form), owner});
    if (Control* first = shown.first_focus(); first != nullptr) shown.enter(*first);
    opened.tell(shown);
    return shown;
}

void Desk::show_modal(const std::shared_ptr<Form>& form)
{
    add(form, nullptr);
    run_modal(*form);
}

void Desk::run_modal(Form& form)
{
    modal_.push_back(&form);
    bring_to_front(form);
    if (run_until_unloaded) {
        run_until_unloaded(form);
    } else {
        form.unload();
    }
}

std::vector<Form*> Desk::forms() const
{
    std::vector<Form*> all;
    for (const auto& shown : shown_) all.push_back(shown.form.get());
    return all;
}

Form* Desk::find(std::string_view name) const
{
    const auto found = std::ranges::find_if(shown_, [&](const Shown& shown) { return shown.form->name() == name; });
    return found == shown_.end() ? nullptr : found->form.get();
}

Form* Desk::front() const
{
    return shown_.empty() ? nullptr : shown_.back().form.get();
}

Form* Desk::modal() const
{
    return modal_.empty() ? nullptr : modal_.back();
}

bool Desk::is_modal(const Form& form) const
{
    return std::ranges::find(modal_, &form) != modal_.end();
}

void Desk::bring_to_front(Form& form)
{
    const auto found = std::ranges::find_if(shown_, [&](const Shown& shown) { return shown.form.get() == &form; });
    if (found == shown_.end()) return;
    std::rotate(found, found + 1, shown_.end());
    came_to_front.tell(form);
}

void Desk::take_away(Form& form)
{
    const auto found = std::ranges::find_if(shown_, [&](const Shown& shown) { return shown.form.get() == &form; });
    if (found == shown_.end()) return;
    gone_.push_back(std::move(found->form));
    shown_.erase(found);
    std::erase(modal_, &form);
    if (&form == report_) report_ = nullptr;
    if (&form == options_) options_ = nullptr;
    if (&form == emailer_) emailer_ = nullptr;
    closed.tell(form);
    const auto owned = std::ranges::find(shown_, &form, &Shown::owner);
    if (owned != shown_.end()) owned->form->unload();
}

void Desk::close_all()
{
    while (!shown_.empty()) shown_.back().form->unload();
}

}  // namespace velora::forms
