#include <algorithm>
#include <array>

#include "forms/company_rules.h"
#include "forms/frm_configure.h"
#include "session/error_messengers.h"
#include "session/settings.h"
#include "values/text.h"

namespace velora::forms {

namespace {

std::string text_of(bool flag)
{
    return flag ? "True" : "False";
}

bool flag(SessionState& state, std::string_view key, std::string_view otherwise)
{
    return to_bool(Value(setting(state, key, otherwise)));
}

int number(SessionState& state, std::string_view key, std::string_view otherwise)
{
    return to_int16(Value(setting(state, key, otherwise)));
}

}  // namespace

/// What LoadPrinterInfo reads and Save_ReportOptions writes, in the order of both.
void frmConfigure::list_options()
{
    options_.push_back({[this] { load_printer(); }, [this] { save_printer(); },
                        [this] { return std::to_string(chkDefault.value()) + lblPrinter.caption(); }});
    add_check_option(chkPreview, "Preview");
    options_.push_back(
        {[this] { load_quote_choice(); }, [this] { save_quote_choice(); }, [this] { return shown_quote_choice(); }});
    add_list_option(cboExport, "Format", "-1");
    add_text_option(txtExport, "Export", application_path(state_, "Export"));
    add_text_option(tbxSMTP, "SMTP");
    add_text_option(tbxUser, "SMTPuser");
    options_.push_back({[this] { tbxPassword.set_text(Decrypt(state_, setting(state_, "SMTPpwd", ""))); },
                        [this] { keep("SMTPpwd", Encrypt(state_, tbxPassword.text())); },
                        [this] { return tbxPassword.text(); }});
    add_text_option(tbxName, "Sender");
    add_text_option(tbxEmail, "SendEmail");
    add_check_option(chkEmail, "Attach");
    add_check_option(chkCopyMe, "CopyMe");
    add_check_option(chkReadReceipt, "ReadReceipt");
    add_text_option(txtLogFile, "LogFolder", application_path(state_, "Log File"));
    add_check_option(chkDeleteLog, "DeleteLog");
    add_order_option("mdUseDLRange", txtChecklist, "Checklist", "Order Checklist.rpt");
    add_order_option("mdPickingSlip", txtPickSlip, "PickingSlip", "Picking Slip.rpt");
    add_order_option("mdConfirmation", txtConfirm, "Confirmation", "Confirmation, Taxes.rpt");
    add_text_option(txtExpire, "Expiration", application_path(state_, "Reports", "Quote Expiration.rpt"));
    add_check_option(chkExpire, "PreExpire");
    add_list_option(cboCommIns, "CommIns", "0");
}

void frmConfigure::add_text_option(TextBox& box, const char* key, const std::string& otherwise)
{
    options_.push_back({[this, &box, key, otherwise] { box.set_text(setting(state_, key, otherwise)); },
                        [this, &box, key] { keep(key, std::string(trimmed(box.text()))); },
                        [&box] { return box.text(); }});
}

void frmConfigure::add_check_option(CheckBox& box, const char* key)
{
    options_.push_back({[this, &box, key] { box.set_value(number(state_, key, "0")); },
                        [this, &box, key] { keep(key, std::to_string(box.value())); },
                        [&box] { return std::to_string(box.value()); }});
}

void frmConfigure::add_list_option(DropDown& list, const char* key, const char* otherwise)
{
    options_.push_back({[this, &list, key, otherwise] { list.select(number(state_, key, otherwise)); },
                        [this, &list, key] { keep(key, std::to_string(list.selected())); },
                        [&list] { return std::to_string(list.selected()); }});
}

/// Read and saved where the column is 1, while the pane is dead where it is not above 0. The two tests are meant.
void frmConfigure::add_order_option(const char* column, TextBox& box, const char* key, const char* file)
{
    const auto load = [this, column, &box, key, file] {
        if (!default_is(state_, column, 1)) return;
        box.set_text(setting(state_, key, application_path(state_, "Reports", file)));
    };
    const auto save = [this, column, &box, key] {
        if (default_is(state_, column, 1)) keep(key, std::string(trimmed(box.text())));
    };
    options_.push_back({load, save, [&box] { return box.text(); }});
}

void frmConfigure::LoadPrinterInfo()
{
    with_failure_path(state_, ErrorMessenger, "frmConfigure.LoadPrinterInfo", [&] {
        for (const Option& option : options_) {
            ++reached_;
            option.load();
        }
    });
    for (size_t at = reached_; at < options_.size(); ++at) options_[at].unread = options_[at].shown();
}

/// Behind an option that could not be read the controls were not filled: what they stand for is left alone, unless
/// the user entered something.
void frmConfigure::Save_ReportOptions()
{
    kept_.clear();
    for (size_t at = 0; at < options_.size(); ++at) {
        const Option& option = options_[at];
        if (at < reached_ || option.shown() != option.unread) option.save();
    }
    save_settings(state_, kept_);
}

void frmConfigure::load_printer()
{
    chkDefault.set_value(flag(state_, "Default", "True") ? 1 : 0);
    const std::string name = setting(state_, "Name", "");
    if (!trimmed(name).empty()) lblPrinter.set_caption(" " + name);
}

void frmConfigure::load_quote_choice()
{
    if (flag(state_, "Quote0", "True")) {
        optQuote[0].set_value(true);
    } else if (flag(state_, "Quote1", "False")) {
        optQuote[1].set_value(true);
        const std::string location(trimmed(setting(state_, "Datapipe", "")));
        const auto found = std::ranges::find(locations_, location);
        if (!location.empty() && found != locations_.end()) {
            cboReport.select(static_cast<int>(found - locations_.begin()));
        }
    } else if (flag(state_, "Quote2", "False")) {
        optQuote[2].set_value(true);
        custom_path_ = trimmed(setting(state_, "Custom", ""));
        txtCustom.set_text(custom_path_);
    }
}

void frmConfigure::save_printer()
{
    const bool usual = chkDefault.value() == 1;
    Printer printer;
    if (!usual) {
        // Without a click in the list it is the machine's own, whatever the name on the form. It is meant.
        auto current = state_.current_printer;
        if (!current && state_.ports.printers != nullptr) current = state_.ports.printers->usual();
        printer = current.value_or(Printer{});
    }
    keep("Default", text_of(usual));
    keep("Name", printer.DeviceName);
    keep("Driver", printer.DriverName);
    keep("Port", printer.Port);
}

std::string frmConfigure::shown_quote_choice() const
{
    std::string shown = std::to_string(cboReport.selected()) + custom_path_;
    for (size_t index = 0; index < optQuote.size(); ++index) shown += text_of(optQuote[index].value());
    return shown;
}

void frmConfigure::save_quote_choice()
{
    for (size_t index = 0; index < optQuote.size(); ++index) {
        keep("Quote" + std::to_string(index), text_of(optQuote[index].value()));
    }
    const int chosen = cboReport.selected();
    const bool of_list = !optQuote[0].value() && optQuote[1].value() && chosen >= 0;
    const bool custom = !optQuote[0].value() && !optQuote[1].value();
    keep("Datapipe", of_list ? locations_.at(static_cast<size_t>(chosen)) : "");
    keep("Custom", custom ? custom_path_ : "");
}

}  // namespace velora::forms
