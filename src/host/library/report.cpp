#include <velora/report.h>

#include "host/library/handle.h"
#include "host/quote_choice.h"
#include "values/fault.h"

using velora::Handle;
using velora::Report;

namespace {

velora_status refuse(const char* why) noexcept
try {
    velora::thread_error() = {why, 0};
    return VELORA_USAGE;
} catch (...) {
    return VELORA_USAGE;
}

std::string text_of(const char* text)
{
    return text != nullptr ? text : "";
}

/// The operation on the handle's own session and connection. No work starts on a null handle.
template <class Work>
velora_status operate(velora_report* report, std::string_view kind, Work work) noexcept
{
    if (report == nullptr) return refuse("The handle is null.");
    return report->handle.operate(kind, [&](Report& service) { work(service, service.state()); });
}

velora::WhichEngine engine_of(int32_t engine)
{
    return static_cast<velora::WhichEngine>(engine);
}

}  // namespace

const char* velora_version(void)
{
    return VELORA_VERSION;
}

velora_status velora_open(const velora_options* options, velora_report** report)
{
    if (report == nullptr) return refuse("The place for the handle is null.");
    *report = nullptr;
    if (options == nullptr) return refuse("The options are null.");
    if (options->size != sizeof(velora_options)) return refuse("velora_options.size is not sizeof(velora_options).");
    try {
        velora::thread_error() = {};
        *report = new velora_report{Handle(*options)};
        return VELORA_DELIVERED;
    } catch (const velora::UsageError& error) {
        return refuse(error.what());
    } catch (const velora::HostError& error) {
        refuse(error.what());
        return VELORA_TOLD;
    } catch (const std::exception& caught) {
        refuse(caught.what());
        return VELORA_FAULT;
    } catch (...) {
        return VELORA_FAULT;
    }
}

void velora_close(velora_report* report)
{
    if (report != nullptr && report->handle.is_in_use()) {
        refuse("The handle is in use by another call. It was not closed.");
        return;
    }
    delete report;
}

const char* velora_last_error(const velora_report* report)
{
    return report != nullptr ? report->handle.error().text.c_str() : velora::thread_error().text.c_str();
}

int32_t velora_last_fault(const velora_report* report)
{
    return report != nullptr ? report->handle.error().fault : velora::thread_error().fault;
}

velora_status velora_set_export(velora_report* report, const char* format, const char* target)
{
    if (report == nullptr) return refuse("The handle is null.");
    return report->handle.attempt([&](velora::Host&) {
        report->handle.set_export(format, target);
        return VELORA_DELIVERED;
    });
}

velora_status velora_set_printer(velora_report* report, const char* name)
{
    if (report == nullptr) return refuse("The handle is null.");
    return report->handle.attempt([&](velora::Host&) {
        report->handle.set_printer(text_of(name));
        return VELORA_DELIVERED;
    });
}

int32_t velora_engine(velora_report* report)
{
    return report != nullptr ? report->handle.engine() : 0;
}

int32_t velora_multi_curr(velora_report* report)
{
    return report != nullptr && report->handle.multi_curr() ? 1 : 0;
}

const char* velora_exported_file(velora_report* report)
{
    if (report == nullptr) return "";
    report->handle.attempt([&](velora::Host& host) {
        report->handle.handed_file = host.company().gExportFile;
        return VELORA_DELIVERED;
    });
    return report->handle.handed_file.c_str();
}

velora_status velora_find_quote(velora_report* report, const char* number, int32_t* id)
{
    if (report == nullptr) return refuse("The handle is null.");
    if (number == nullptr || id == nullptr) return refuse("The number or the place for the id is null.");
    return report->handle.attempt([&](velora::Host& host) {
        try {
            *id = velora::id_of(host.company(), {number});
        } catch (const velora::HostError&) {
            return VELORA_NO_DATA;
        }
        return VELORA_DELIVERED;
    });
}

velora_status velora_tax_authorities(velora_report* report, velora_vlTaxInformation slots[5], int32_t* count)
{
    if (report == nullptr) return refuse("The handle is null.");
    if (slots == nullptr || count == nullptr) return refuse("The place for the slots or their number is null.");
    return report->handle.attempt([&](velora::Host& host) {
        auto& kept = report->handle.handed_slots = host.company().gTaxAuthorities;
        for (size_t at = 0; at < kept.size(); ++at) {
            const auto& slot = kept[at];
            slots[at] = {slot.Authority.c_str(), slot.TaxClass.c_str(), slot.CascadeTax ? 1 : 0, slot.RegNumber.c_str(),
                         slot.Amount};
        }
        *count = host.company().gTaxAuthorityCount;
        return VELORA_DELIVERED;
    });
}

velora_status velora_Show_Printers(velora_report* report, int32_t win_xp, int32_t engine, int32_t frame)
{
    return operate(report, "", [&](Report& service, velora::SessionState& state) {
        service.Show_Printers(state.gSess, state.gConn, win_xp != 0, engine_of(engine),
                              static_cast<velora::WhichFrame>(frame));
    });
}

velora_status velora_Open_Reports(velora_report* report, int32_t win_xp, int32_t engine, int32_t which_report,
                                  int32_t multi_curr, const char* sess_user, int32_t quote_id, const char* cust_group,
                                  int32_t own_quotes, int32_t email_it, int32_t show_cust)
{
    return operate(report, "", [&](Report& service, velora::SessionState& state) {
        service.Open_Reports(state.gSess, state.gConn, win_xp != 0, engine_of(engine),
                             static_cast<velora::WhichReport>(which_report), multi_curr != 0, text_of(sess_user),
                             quote_id, text_of(cust_group), own_quotes != 0, email_it != 0,
                             static_cast<int16_t>(show_cust));
    });
}

velora_status velora_Print_CurrentQuote(velora_report* report, int32_t engine, int32_t multi_curr, int32_t quote_id,
                                        const char* cust_group, int32_t show_cust, const char* report_string,
                                        int32_t export_it, int32_t preview)
{
    return operate(report, "quote", [&](Report& service, velora::SessionState& state) {
        service.Print_CurrentQuote(state.gSess, state.gConn, engine_of(engine), multi_curr != 0, quote_id,
                                   text_of(cust_group), static_cast<int16_t>(show_cust),
                                   report->handle.definition("quote", report_string), export_it != 0, preview != 0);
    });
}

velora_status velora_Print_OrderChecklist(velora_report* report, int32_t engine, int32_t quote_id,
                                          const char* report_string, int32_t export_it, int32_t preview)
{
    return operate(report, "checklist", [&](Report& service, velora::SessionState& state) {
        service.Print_OrderChecklist(state.gSess, state.gConn, engine_of(engine), quote_id,
                                     report->handle.definition("checklist", report_string), export_it != 0,
                                     preview != 0);
    });
}

velora_status velora_Print_OrderConfirmation(velora_report* report, int32_t engine, int32_t quote_id,
                                             const char* report_string, int32_t export_it, int32_t preview)
{
    return operate(report, "confirmation", [&](Report& service, velora::SessionState& state) {
        service.Print_OrderConfirmation(state.gSess, state.gConn, engine_of(engine), quote_id,
                                        report->handle.definition("confirmation", report_string), export_it != 0,
                                        preview != 0);
    });
}

velora_status velora_Show_Emailer(velora_report* report, int32_t win_xp, int32_t engine)
{
    return operate(report, "", [&](Report& service, velora::SessionState& state) {
        service.Show_Emailer(state.gSess, win_xp != 0, engine_of(engine));
    });
}

velora_status velora_Print_OrderPickingSlip(velora_report* report, int32_t engine, int32_t quote_id,
                                            const char* report_string, int32_t export_it, int32_t preview,
                                            int32_t quant_as_int)
{
    return operate(report, "picking-slip", [&](Report& service, velora::SessionState& state) {
        service.Print_OrderPickingSlip(state.gSess, state.gConn, engine_of(engine), quote_id,
                                       report->handle.definition("picking-slip", report_string), export_it != 0,
                                       preview != 0, quant_as_int != 0);
    });
}

velora_status velora_Print_QuoteExpiration(velora_report* report, int32_t engine, const char* report_string,
                                           int32_t export_it, int32_t preview)
{
    return operate(report, "expiration", [&](Report& service, velora::SessionState& state) {
        service.Print_QuoteExpiration(state.gSess, state.gConn, engine_of(engine),
                                      report->handle.definition("expiration", report_string), export_it != 0,
                                      preview != 0);
    });
}
