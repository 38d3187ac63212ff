#include "host/faults/walked_run.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "host/adapters.h"
#include "host/faults/faulty_disk.h"
#include "host/faults/faulty_ports.h"
#include "reports/kinds.h"

namespace velora::testing {
namespace {

constexpr size_t kFewestPoints = 1000;

/// How many calls failed in all tests of this program; told in its last line.
size_t points = 0;

class Count : public ::testing::Environment {
public:
    void TearDown() override
    {
        const bool is_part = ::testing::GTEST_FLAG(filter) != "*";
        EXPECT_TRUE(is_part || points >= kFewestPoints) << "the walks end too early";
        std::cout << points << " fault points" << std::endl;
    }
};
const auto* const counting = ::testing::AddGlobalTestEnvironment(new Count);

constexpr const char* kOwnQuery = R"(<jasperReport name="own" pageWidth="300" pageHeight="200" columnWidth="300"
    leftMargin="0" rightMargin="0" topMargin="0" bottomMargin="0">
  <queryString><![CDATA[SELECT QuoteNumber FROM Quote WHERE QuoteID < 20]]></queryString>
  <field name="QuoteNumber" class="java.lang.String"/>
  <detail><band height="20"><textField><reportElement x="0" y="0" width="200" height="20"/>
    <textFieldExpression><![CDATA[$F{QuoteNumber}]]></textFieldExpression></textField></band></detail>
</jasperReport>)";

void put_behind(Adapters& made, Line& line)
{
    made.database = [&line, open = made.database](const StorePlace& place, std::chrono::seconds timeout) {
        return faulty(open(place, timeout), line.database);
    };
    made.accounting = [&line, open = made.accounting](const StorePlace& place, std::chrono::seconds timeout) {
        return faulty(open(place, timeout), line.accounting);
    };
    made.printers = std::make_unique<FaultyPrinters>(line.printers, line.printed);
    made.mail_by = [&line](const Clock&, const MailServerRules&) {
        return std::make_unique<FaultyMail>(line.mail, line.sent);
    };
}

struct Broken {
    size_t call;
    bool stays;
};

/// The first ones of each kind of call, alone and with everything behind them, and the last of each.
std::vector<Broken> chosen(const FaultPlan& whole, size_t first_ones)
{
    std::vector<Broken> all;
    for (const auto& [kind, calls] : whole.of_kind) {
        for (size_t at = 0; at < std::min(first_ones, calls.size()); ++at) {
            all.push_back({calls[at], false});
            if (calls[at] != whole.calls) all.push_back({calls[at], true});
        }
        if (calls.size() > first_ones) all.push_back({calls.back(), false});
    }
    return all;
}

}  // namespace

void WalkedRun::SetUp()
{
    HostTest::SetUp();
    folder_ = company_copy();
    write_text(scratch("own.rpt"), kOwnQuery);
    for (const char* name : {"export", "user", "temporary"}) fs::create_directory(scratch(name));
    ::setenv("TMPDIR", scratch("temporary").c_str(), 1);
}

std::vector<Document> WalkedRun::documents() const
{
    std::vector<Document> all;
    for (const ReportKind& kind : report_kinds()) {
        if (kind.print == nullptr) continue;
        Document document{std::string(kind.name), {std::string(kind.name)}};
        if (kind.criteria.quote) document.command.insert(document.command.end(), {"--number", "Q-10052"});
        if (kind.criteria.file) document.command.push_back(scratch("own.rpt").string());
        document.in_slips = kind.which == eRptPickingSlip;
        document.is_marked = document.in_slips || kind.which == eRptOrderConfirmation;
        all.push_back(std::move(document));
    }
    return all;
}

Ran WalkedRun::run_on(Line& line, const Strings& command) const
{
    std::ostringstream out, err;
    const Surroundings around{out,
                              err,
                              [](const char*) { return std::string(); },
                              fs::path(VELORA_SOURCE_DIR) / "velora-report",
                              false,
                              [&](Adapters& made) { put_behind(made, line); }};
    auto arguments = in_company(folder_, command);
    arguments[3] = settings().string();
    ExitStatus status{};
    {
        const FaultyDisk disk(scratch(""), line.disk);
        status = run_command_line(arguments, around);
    }
    EXPECT_EQ(files_in(scratch("temporary")), Strings{});
    return {static_cast<int>(status), out.str(), err.str()};
}

Left WalkedRun::deliver(Line& line, const Document& document, Strings where) const
{
    write_text(target(), kEarlier);
    ask_database("UPDATE Quote SET quPrConfirm = 0, quPrPickSlip = 0 WHERE quPrConfirm + quPrPickSlip > 0");
    Strings command = document.command;
    if (where.empty()) where = {"--output", target().string()};
    command.insert(command.end(), where.begin(), where.end());
    Left left{run_on(line, command), file_text(target()), messages(), files_in(scratch("export")), ""};
    left.marks = ask_database("SELECT quPrConfirm || quPrPickSlip FROM Quote WHERE QuoteNumber = 'Q-10052'");
    return left;
}

void WalkedRun::walk(FaultPlan Line::*plan, size_t first_ones, const std::function<void(Line&)>& run) const
{
    Line whole;
    run(whole);
    ASSERT_GT((whole.*plan).calls, 0U) << "nothing is asked of the port";
    for (const auto& [call, stays] : chosen(whole.*plan, first_ones)) {
        Line line;
        line.*plan = {call, stays, 0, {}};
        SCOPED_TRACE("call " + std::to_string(call) + (stays ? " and all behind it" : ""));
        run(line);
        EXPECT_TRUE((line.*plan).was_met()) << "the run took another course before the fault";
        ++points;
    }
}

void WalkedRun::expect_nothing_half(const Left& left, const Document& document)
{
    const bool is_new = left.text.starts_with("%PDF-") && left.text.ends_with("%%EOF\n");
    EXPECT_EQ(left.files, Strings{"it.pdf"});
    EXPECT_TRUE(is_new || left.text == kEarlier) << "the file has " << left.text.size() << " bytes";
    EXPECT_EQ(left.boxes.empty(), left.ran.status == 0) << left.boxes;
    EXPECT_TRUE(left.is_delivered() || left.ran.status == 1) << left.ran.status << left.boxes;
    if (left.is_delivered()) {
        EXPECT_TRUE(is_new);
        EXPECT_EQ(left.marks != "00", document.is_marked && left.ran.err.find("not marked") == std::string::npos);
    } else {
        EXPECT_EQ(left.marks, "00") << document.kind << " is marked and was told as failed";
        EXPECT_EQ(is_new, document.in_slips && left.ran.err.find("went out: ") != std::string::npos) << left.ran.err;
    }
}

Strings WalkedRun::files_in(const fs::path& place)
{
    Strings names;
    for (const auto& entry : fs::directory_iterator(place)) names.push_back(entry.path().filename().string());
    std::ranges::sort(names);
    return names;
}

/// Runs a statement beside the program. @return the cell that it answers with
std::string WalkedRun::ask_database(const char* sql) const
{
    sqlite3* database = nullptr;
    EXPECT_EQ(sqlite3_open((folder_ / "velora.db").c_str(), &database), SQLITE_OK);
    std::string cell;
    const auto keep = [](void* into, int, char** row, char**) {
        *static_cast<std::string*>(into) = row[0];
        return 0;
    };
    EXPECT_EQ(sqlite3_exec(database, sql, keep, &cell, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
    sqlite3_close(database);
    return cell;
}

}  // namespace velora::testing
