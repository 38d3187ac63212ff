#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/user_interface.h"
#include "session/session_state.h"
#include "values/fault.h"

namespace velora::test {

/// Keeps every box that it is shown.
class RecordingUser final : public UserInterface {
public:
    void show(const MessageBox& box) override { boxes.push_back(box); }
    void show_pages(std::shared_ptr<PageView>, const std::string& caption) override { captions.push_back(caption); }

    std::vector<MessageBox> boxes;
    std::vector<std::string> captions;
};

class FixedClock final : public Clock {
public:
    [[nodiscard]] DateTime now() const override { return now_; }
    DateTime now_ = *DateTime::from_iso("2026-03-13T10:15:00");
};

/// The region en-US, without asking the machine.
class EnglishRegion final : public Region {
public:
    [[nodiscard]] const NumberMarks& marks() const override { return marks_; }
    [[nodiscard]] std::string short_date(const DateTime& date) const override;
    [[nodiscard]] std::string plain_date(const DateTime& date) const override;
    [[nodiscard]] std::optional<DateTime> read_date(std::string_view text, int this_year) const override;
    NumberMarks marks_;
};

class MapSettings final : public SettingsStore {
public:
    [[nodiscard]] std::string get(std::string_view application, std::string_view section, std::string_view key,
                                  std::string_view otherwise) const override;
    void set(std::string_view application, std::string_view section, std::string_view key,
             std::string_view value) override;

private:
    std::map<std::string, std::string> values_;
};

class MapProfiles final : public ProfileFile {
public:
    [[nodiscard]] bool exists(const std::string& path) const override { return files.contains(path); }
    [[nodiscard]] std::string read(const std::string& path, std::string_view section,
                                   std::string_view key) const override;
    void write(const std::string& path, std::string_view section, std::string_view key,
               std::string_view value) override;
    void delete_section(const std::string& path, std::string_view section) override;

    std::map<std::string, std::map<std::string, std::map<std::string, std::string>>> files;
};

/// Turns text around, and knows its own.
class ReversingCipher final : public PasswordCipher {
public:
    [[nodiscard]] std::string scramble(std::string_view text) override;
    [[nodiscard]] std::string unscramble(std::string_view text) override;
};

/// A report that keeps what it is handed; its rows are read when it goes out, as a real one does.
class FakeReport final : public OpenedReport {
public:
    using Row = std::map<std::string, Value>;

    [[nodiscard]] const std::vector<TableSource::Field>& fields() const override { return asked; }
    [[nodiscard]] bool brings_its_own_data() const override { return false; }
    void SetDataSource(std::shared_ptr<TableSource> data) override { source = std::move(data); }
    void SetParameter(const std::string& name, Value value) override { parameters[name] = std::move(value); }
    void SelectPrinter(const std::string& driver, const std::string& device, const std::string& port) override
    {
        printer = driver + "|" + device + "|" + port;
    }
    void PaperOrientation(int orientation) override { calls.push_back("orientation " + std::to_string(orientation)); }
    void PaperSource(int paper) override { calls.push_back("source " + std::to_string(paper)); }
    void PrintOut() override;
    void Export(ExportFormat format, const std::string& path) override;
    std::shared_ptr<PageView> View() override;
    [[nodiscard]] const std::vector<std::string>& warnings() const override { return none; }

    std::vector<TableSource::Field> asked;
    std::shared_ptr<TableSource> source;
    std::map<std::string, Value> parameters;
    std::string printer;
    std::vector<std::string> calls;  ///< what was asked of it, in order
    std::vector<Row> rows;
    std::optional<Fault> refuses;  ///< raised when the report is to go out

private:
    void take_rows();
    std::vector<std::string> none;
};

class FakeEngine final : public ReportEngine {
public:
    std::shared_ptr<OpenedReport> OpenReport(const std::string& path) override;

    std::shared_ptr<FakeReport> report = std::make_shared<FakeReport>();
    std::string missing = "missing.rpt";  ///< the one path that is not there
};

class FakePrinters final : public Printers {
public:
    [[nodiscard]] std::vector<Printer> list() const override { return printers; }
    std::vector<Printer> printers;
};

/// A company of its own in a scratch folder: empty product database and accounting store with the real schemas,
/// the real adapters over them, and fakes for everything else. Rows are written as SQL.
class TestCompany {
public:
    explicit TestCompany(WhichEngine engine = eDBSQLServer);
    TestCompany(const TestCompany&) = delete;
    TestCompany& operator=(const TestCompany&) = delete;
    ~TestCompany();

    TestCompany& product(const std::string& sql);
    TestCompany& accounting(const std::string& sql);

    /// Gives every column of a table's rows a value of its own, texts with blanks around them, but for those to keep.
    TestCompany& mark(const std::string& table, const std::set<std::string>& keep);
    /// What `mark` put into "Table.column", as it reads trimmed; as a literal, with the blanks around it.
    [[nodiscard]] const std::string& marker(const std::string& column) const { return markers_.at(column); }

    /// The state with both stores open; they are opened at the first call, so write the rows before.
    SessionState& state();
    /// Connection and session for an operation that is handed them.
    std::shared_ptr<Connection> connection() { return state().gConn; }
    std::shared_ptr<AccountingSession> session() { return state().gSess; }

    [[nodiscard]] const std::vector<MessageBox>& boxes() const { return user.boxes; }
    [[nodiscard]] std::string box_text(size_t at) const { return at < user.boxes.size() ? user.boxes[at].text : ""; }

    RecordingUser user;
    FixedClock clock;
    EnglishRegion region;
    MapSettings settings;
    MapProfiles profiles;
    ReversingCipher cipher;
    FakeEngine engine;
    FakePrinters printers;

private:
    std::filesystem::path folder_;
    SessionState state_;
    WhichEngine dialect_;
    std::map<std::string, std::string> markers_;
    bool opened_ = false;
};

}  // namespace velora::test
