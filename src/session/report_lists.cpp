#include "session/report_lists.h"

#include <array>
#include <span>

#include "session/error_messengers.h"
#include "session/lists.h"
#include "session/settings.h"
#include "values/number_text.h"

namespace velora {

namespace {

struct Shipped {
    std::string_view name;
    std::string_view file;
    int16_t type;
};

// clang-format off
constexpr auto kQuotes     = std::to_array<Shipped>({{"Quote", "Quote.rpt", 1}, {"Quote, Taxes", "Quote, Taxes.rpt", 1}});
constexpr auto kOverview   = std::to_array<Shipped>({{"Quote Overview", "Quote Overview.rpt", 2}});
constexpr auto kCustomers  = std::to_array<Shipped>({{"Customer List", "Customer List.rpt", 3}});
constexpr auto kItems      = std::to_array<Shipped>({{"Item List", "Item List.rpt", 4}});
constexpr auto kWinLoss    = std::to_array<Shipped>({{"Win Loss", "Win Loss.rpt", 5}});
constexpr auto kLostReason = std::to_array<Shipped>({{"Lost Reason", "Lost Reason.rpt", 6}});
constexpr auto kOrders     = std::to_array<Shipped>({{"Order Checklist", "Order Checklist.rpt", 7},
                                                     {"Picking Slip", "Picking Slip.rpt", 8},
                                                     {"Confirmation, Taxes", "Confirmation, Taxes.rpt", 9}});
constexpr auto kExpiration = std::to_array<Shipped>({{"Quote Expiration", "Quote Expiration.rpt", 10}});
constexpr auto kBackOrders = std::to_array<Shipped>({{"Back Order Items", "Back Order Items.rpt", 11}});

struct ListFile {
    std::array<WhichReport, 4> kinds;  // the first ones count
    size_t kind_count;
    std::string_view suffix;
    std::span<const Shipped> reports;
};

constexpr auto kListFiles = std::to_array<ListFile>({
    {{eRptAllOrderMenu, eRptOrderChecklist, eRptPickingSlip, eRptOrderConfirmation}, 4, "_OrderReports.ini", kOrders},
    {{eRptQuote},           1, "_QuoteReports.ini",        kQuotes},
    {{eRptCustomerList},    1, "_CustomerListReports.ini", kCustomers},
    {{eRptItemList},        1, "_ItemListReports.ini",     kItems},
    {{eRptWinLossGraph},    1, "_WinLossReports.ini",      kWinLoss},
    {{eRptLostReasonGraph}, 1, "_LostReasonReports.ini",   kLostReason},
    {{eRptOverviewQuotes},  1, "_OverviewReports.ini",     kOverview},
    {{eRptExpireQuotes},    1, "_ExpirationReports.ini",   kExpiration},
    {{eRptBackOrder},       1, "_BackOrderReports.ini",    kBackOrders},
});
constexpr ListFile kCustomFile{{}, 0, "_CustomReports.ini", {}};
// clang-format on

const ListFile& list_file(WhichReport kind)
{
    for (const auto& file : kListFiles) {
        const auto end = file.kinds.begin() + static_cast<std::ptrdiff_t>(file.kind_count);
        if (std::find(file.kinds.begin(), end, kind) != end) return file;
    }
    return kCustomFile;
}

ProfileFile& profiles(SessionState& state)
{
    if (state.ports.profiles == nullptr) throw fault::object_not_set("profiles");
    return *state.ports.profiles;
}

std::string report_section(size_t number)
{
    return "Report #" + std::to_string(number);
}

void write_entries(ProfileFile& file, const std::string& path, std::span<const ReportListEntry> entries)
{
    file.write(path, "Reports", "Number", std::to_string(entries.size()));
    for (size_t at = 0; at < entries.size(); ++at) {
        const std::string section = report_section(at + 1);
        file.write(path, section, "Name", entries[at].Name);
        file.write(path, section, "Location", entries[at].Location);
        file.write(path, section, "Type", std::to_string(entries[at].Type));
    }
}

}  // namespace

std::string INIFile(SessionState& state, WhichReport kind)
{
    std::string result;
    with_failure_path(state, ErrorMessenger, "modGeneral.INIFile", [&] {
        const auto name = company_id(state).append(list_file(kind).suffix);
        const std::string path = application_path(state, "Reports", name);
        if (!profiles(state).exists(path)) DefaultReportLists(state).create(kind, path);
        result = path;
    });
    return result;
}

std::string Read_ProfileString(SessionState& state, std::string_view section, std::string_view key)
{
    return profiles(state).read(INIFile(state, state.gWhichReport), section, key);
}

void Write_ProfileString(SessionState& state, std::string_view section, std::string_view key, std::string_view value)
{
    profiles(state).write(INIFile(state, state.gWhichReport), section, key, value);
}

void Delete_ProfileSection(SessionState& state, std::string_view section)
{
    profiles(state).delete_section(INIFile(state, state.gWhichReport), section);
}

void Read_ReportList(SessionState& state)
{
    const std::string path = INIFile(state, state.gWhichReport);
    const auto& file = profiles(state);
    const auto count = static_cast<size_t>(std::max(0.0, leading_number(file.read(path, "Reports", "Number"))));
    state.gReportList.clear();
    for (size_t number = 1; number <= count; ++number) {
        const std::string section = report_section(number);
        ReportListEntry entry{file.read(path, section, "Name"), file.read(path, section, "Location"), 0};
        if (entry.Location.empty() && entry.Name.empty()) continue;  // a count too high lists nothing blank
        entry.Type = static_cast<int16_t>(leading_number(file.read(path, section, "Type")));
        state.gReportList.push_back(std::move(entry));
    }
}

void Write_ReportList(SessionState& state)
{
    write_entries(profiles(state), INIFile(state, state.gWhichReport), state.gReportList);
}

void DefaultReportLists::create(WhichReport kind, const std::string& path) const
{
    std::vector<ReportListEntry> entries;
    for (const auto& report : list_file(kind).reports) {
        entries.push_back({std::string(report.name), application_path(state_, "Reports", report.file), report.type});
    }
    write_entries(profiles(state_), path, entries);
}

}  // namespace velora
