#include "host/drive/driver.h"

#include <algorithm>
#include <istream>

#include "reports/kinds.h"

namespace velora::drive {

namespace {

using namespace forms;

constexpr const char* kNoSuch = "no such form or control";
constexpr const char* kHidden = "hidden";
constexpr const char* kDisabled = "disabled";
constexpr const char* kFocusStays = "the focus stays in a box";
constexpr const char* kOtherIsModal = "another form is modal";
constexpr const char* kNotUnderstood = "not understood";

/// The text under a key; blank when there is none.
std::string text(const Json& command, const char* key)
{
    const auto found = command.find(key);
    return found != command.end() && found->is_string() ? found->get<std::string>() : std::string();
}

std::optional<int> number(const Json& command, const char* key)
{
    const auto found = command.find(key);
    if (found == command.end() || !found->is_number_integer()) return std::nullopt;
    const auto value = found->get<int64_t>();
    if (value < INT32_MIN || value > INT32_MAX) return std::nullopt;
    return static_cast<int>(value);
}

template <class Sort>
bool is_a(const Control& control)
{
    return dynamic_cast<const Sort*>(&control) != nullptr;
}

bool takes_focus(const Control& control)
{
    return control.takes_focus();
}

bool can_be_clicked(const Control& control)
{
    return is_a<Button>(control) || is_a<CheckBox>(control) || is_a<OptionButton>(control) || is_a<Clickable>(control);
}

bool has_rows_or_nodes(const Control& control)
{
    return is_a<RowChoice>(control) || is_a<Tree>(control);
}

}  // namespace

Driver::Driver(Desk& desk, ScriptedUser& user, Hands& hands, HostCalls calls, std::istream& in, std::ostream& out)
    : desk_(desk), user_(user), hands_(hands), calls_(std::move(calls)), in_(in), answer_(out)
{
    user_.on_box = [this](const MessageBox& box) { answer_.add_box(box); };
    user_.on_pages = [this](std::shared_ptr<PageView> pages, const std::string& caption) {
        desk_.show_viewer(std::move(pages), caption);
    };
    watches_[0] = desk_.opened.watch([this](Form& form) { answer_.add_opened(form.name()); });
    watches_[1] = desk_.closed.watch([this](Form& form) { answer_.add_closed(form.name()); });
    desk_.on_call = [this](const BuilderCall& call) { answer_.add_run(call); };
    desk_.on_mail_event = [this](int32_t percent) { mail_event(percent); };
    desk_.answer_finder = [this](FinderSort sort, std::string& found) { return user_.answer_finder(sort, found); };
    desk_.run_until_unloaded = [this](Form& form) { wait_for_commands(&form); };
}

Driver::~Driver()
{
    desk_.close_all();  // what is told about it goes nowhere
    desk_.opened.forget(watches_[0]);
    desk_.closed.forget(watches_[1]);
    desk_.on_call = nullptr;
    desk_.on_mail_event = nullptr;
    desk_.answer_finder = nullptr;
    desk_.run_until_unloaded = nullptr;
}

bool Driver::run()
{
    wait_for_commands(nullptr);
    desk_.close_all();
    desk_.sweep();
    return !broken_;
}

void Driver::wait_for_commands(Form* until)
{
    while (!at_end_ && (until == nullptr || !until->is_unloaded())) {
        answer_.write();
        if (until == nullptr) desk_.sweep();  // no procedure of a form runs here
        Json command;
        if (!read(command)) {
            at_end_ = true;
            break;
        }
        answer_.begin();
        obey(command);
    }
    if (until != nullptr) until->unload();
}

/// The next line that is not blank; false at the end and for one that is no JSON.
bool Driver::read(Json& command)
{
    for (std::string line; std::getline(in_, line);) {
        ++line_;
        if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
        command = Json::parse(line, nullptr, false);
        broken_ = command.is_discarded();
        return !broken_;
    }
    return false;
}

const std::vector<Driver::Verb>& Driver::verbs()
{
    // "key" behind those that a key goes with.
    static const std::vector<Verb> all{
        {"open", &Driver::open},     {"options", &Driver::options}, {"email", &Driver::email},
        {"type", &Driver::type},     {"enter", &Driver::enter},     {"click", &Driver::click},
        {"select", &Driver::select}, {"expand", &Driver::expand},   {"pick", &Driver::pick},
        {"close", &Driver::close},   {"state", &Driver::state},     {"answer", &Driver::answer},
        {"during", &Driver::during}, {"key", &Driver::key},
    };
    return all;
}

void Driver::obey(const Json& command)
{
    if (command.is_object()) {
        for (const Verb& verb : verbs()) {
            if (command.contains(verb.key)) return (this->*verb.action)(command);
        }
    }
    refuse(kNotUnderstood);
}

bool Driver::refuse(const char* why)
{
    if (!in_mail_event_) answer_.refuse(why);
    return false;
}

bool Driver::host_may_call()
{
    return desk_.modal() == nullptr || refuse(kOtherIsModal);
}

void Driver::open(const Json& command)
{
    if (!host_may_call()) return;
    const std::string name = text(command, "open");
    const ReportKind* kind = find_report_kind(name);
    if (kind == nullptr && name != "orders") return void(refuse(kNoSuch));
    calls_.open_reports(kind != nullptr ? kind->which : eRptAllOrder, number(command, "id").value_or(0));
}

void Driver::options(const Json& command)
{
    if (!host_may_call()) return;
    const auto pane = std::ranges::find(kPaneNames, text(command, "options"));
    if (pane == kPaneNames.end()) return void(refuse(kNoSuch));
    calls_.show_printers(static_cast<WhichFrame>(pane - kPaneNames.begin()));
}

void Driver::email(const Json&)
{
    if (host_may_call()) calls_.show_emailer();
}

Form* Driver::form_of(const Json& command)
{
    Form* form = command.contains("form") ? desk_.find(text(command, "form")) : desk_.front();
    if (form == nullptr) {
        refuse(kNoSuch);
        return nullptr;
    }
    if (desk_.modal() != nullptr && desk_.modal() != form) {
        refuse(kOtherIsModal);
        return nullptr;
    }
    if (form != desk_.front()) desk_.bring_to_front(*form);
    return form;
}

Control* Driver::reach_control(const Json& command, const char* verb, bool (*fits)(const Control&))
{
    Form* form = form_of(command);
    if (form == nullptr) return nullptr;
    Control* control = form->find(text(command, verb));
    const char* why = nullptr;
    if (control == nullptr || !fits(*control)) {
        why = kNoSuch;
    } else if (!control->is_shown()) {
        why = kHidden;
    } else if (!control->is_usable()) {
        why = kDisabled;
    } else if (control->takes_focus() && !hands_.enter(*control)) {
        why = kFocusStays;
    }
    if (why == nullptr) return control;
    refuse(why);
    return nullptr;
}

template <class Sort>
Sort* Driver::reach(const Json& command, const char* verb)
{
    return dynamic_cast<Sort*>(reach_control(command, verb, is_a<Sort>));
}

void Driver::type(const Json& command)
{
    if (auto* box = reach<TextBox>(command, "type")) hands_.type(*box, text(command, "text"));
}

void Driver::enter(const Json& command)
{
    reach_control(command, "enter", takes_focus);
}

void Driver::click(const Json& command)
{
    Control* control = reach_control(command, "click", can_be_clicked);
    if (control == nullptr) return;
    if (auto* button = dynamic_cast<Button*>(control)) return hands_.press(*button);
    if (auto* box = dynamic_cast<CheckBox*>(control)) return hands_.press(*box);
    if (auto* option = dynamic_cast<OptionButton*>(control)) return hands_.press(*option);
    hands_.press(dynamic_cast<Clickable&>(*control));
}

void Driver::select(const Json& command)
{
    Control* control = reach_control(command, "select", has_rows_or_nodes);
    if (auto* tree = dynamic_cast<Tree*>(control)) {
        const std::string node = text(command, "key");
        if (tree->find(node) == nullptr) return void(refuse(kNoSuch));
        return hands_.choose(*tree, node);
    }
    auto* rows = dynamic_cast<RowChoice*>(control);
    if (rows == nullptr) return;
    const int index = number(command, "index").value_or(-2);
    if (auto* list = dynamic_cast<ListView*>(rows)) {
        while (index >= list->count() && list->fetch_more && list->fetch_more()) continue;
    }
    const int least = is_a<DropDown>(*rows) ? 0 : -1;
    if (index < least || index >= rows->count()) return void(refuse(kNoSuch));
    hands_.choose(*rows, index);
}

void Driver::expand(const Json& command)
{
    auto* tree = reach<Tree>(command, "expand");
    if (tree == nullptr) return;
    const std::string node = text(command, "key");
    if (tree->find(node) == nullptr) return void(refuse(kNoSuch));
    hands_.open(*tree, node);
}

void Driver::key(const Json& command)
{
    Control* control = reach_control(command, "control", takes_focus);
    if (control != nullptr) hands_.press_key(*control, text(command, "key"));
}

void Driver::pick(const Json& command)
{
    const auto date = DateTime::from_iso(text(command, "date"));
    if (!date) return void(refuse(kNotUnderstood));
    if (auto* month = reach<MonthView>(command, "pick")) hands_.pick(*month, date->date_only());
}

void Driver::close(const Json& command)
{
    Form* form = desk_.find(text(command, "close"));
    if (form == nullptr) return void(refuse(kNoSuch));
    if (desk_.modal() != nullptr && desk_.modal() != form) return void(refuse(kOtherIsModal));
    hands_.close(*form);
}

void Driver::state(const Json& command)
{
    const Form* form = desk_.find(text(command, "state"));
    if (form != nullptr) answer_.set_state(form_state(*form, desk_.is_modal(*form)));
}

void Driver::answer(const Json& command)
{
    user_.queue(text(command, "answer"), command.value("value", Json()));
}

void Driver::during(const Json& command)
{
    during_.push_back(command.at("during"));
}

/// Runs what was queued for this moment; what comes of it is told in the answer of the command that sends.
void Driver::mail_event(int32_t percent)
{
    if (percent >= 0) answer_.add_progress(percent);
    if (during_.empty()) return;
    const Json command = std::move(during_.front());
    during_.pop_front();
    in_mail_event_ = true;
    obey(command);
    in_mail_event_ = false;
}

}  // namespace velora::drive
