#include "host/faults/faulty_ports.h"

#include <filesystem>

#include "platform/recordset.h"
#include "values/fault.h"

namespace velora::testing {
namespace {

constexpr const char* kLost = "08S01";
constexpr int32_t kGone = 2006;

class FaultyRows final : public Rows {
public:
    FaultyRows(std::unique_ptr<Rows> rows, std::function<void()> call) : rows_(std::move(rows)), call_(std::move(call))
    {
    }
    [[nodiscard]] bool at_bof() const override { return rows_->at_bof(); }
    [[nodiscard]] bool at_eof() const override { return rows_->at_eof(); }
    void MoveFirst() override { call_(), rows_->MoveFirst(); }
    void MoveNext() override { call_(), rows_->MoveNext(); }
    [[nodiscard]] size_t column_count() const override { return rows_->column_count(); }
    [[nodiscard]] const std::string& column_name(size_t column) const override { return rows_->column_name(column); }
    [[nodiscard]] size_t column(std::string_view name) const override { return rows_->column(name); }
    [[nodiscard]] const Value& value(size_t column) const override { return rows_->value(column); }
    void Close() override { rows_->Close(); }

private:
    std::unique_ptr<Rows> rows_;
    std::function<void()> call_;
};

class FaultyConnection final : public Connection, public std::enable_shared_from_this<FaultyConnection> {
public:
    FaultyConnection(std::shared_ptr<Connection> connection, FaultPlan& plan)
        : connection_(std::move(connection)), plan_(plan)
    {
    }
    std::unique_ptr<Recordset> Open(const Command& command) override
    {
        call();
        return connection_->Open(command);
    }
    std::unique_ptr<Rows> Stream(const Command& command) override
    {
        call();
        return watched(connection_->Stream(command));
    }
    std::unique_ptr<Rows> Execute(std::string_view text) override
    {
        call();
        return watched(connection_->Execute(text));
    }
    std::vector<DatabaseError>& Errors() override { return connection_->Errors(); }
    std::unique_ptr<Snapshot> begin_snapshot() override
    {
        call();
        return connection_->begin_snapshot();
    }
    std::unique_ptr<Connection> open_reader(const QueryLimits& limits) override
    {
        call();
        return connection_->open_reader(limits);
    }

private:
    void call()
    {
        if (!plan_.fails("call")) return;
        Errors().push_back({kDriverWords, "Test driver", kLost, kGone});
        throw Fault(fault::kDatabase, kDriverWords);
    }
    std::unique_ptr<Rows> watched(std::unique_ptr<Rows> rows)
    {
        return std::make_unique<FaultyRows>(std::move(rows), [self = shared_from_this()] { self->call(); });
    }

    std::shared_ptr<Connection> connection_;
    FaultPlan& plan_;
};

/// What a session and its views share.
struct AccountingLine {
    std::shared_ptr<AccountingSession> session;
    FaultPlan& plan;

    void call(const std::string& kind) const
    {
        if (!plan.fails(kind)) return;
        session->Errors().push_back({1, kDriverWords});
        throw Fault(fault::kAccounting, kDriverWords);
    }
};

class FaultyView final : public View {
public:
    FaultyView(std::unique_ptr<View> view, AccountingLine line, std::string_view id)
        : view_(std::move(view)), line_(std::move(line)), id_(id)
    {
    }
    void Init() override { view_->Init(); }
    void Order(int key) override { view_->Order(key); }
    void Browse(std::string_view filter, bool ascending) override { call("Browse"), view_->Browse(filter, ascending); }
    bool Fetch() override { return call("Fetch"), view_->Fetch(); }
    bool Read() override { return call("Read"), view_->Read(); }
    void Compose(std::span<View* const> partners) override
    {
        call("Compose");
        std::vector<View*> inner;
        for (View* partner : partners) {
            inner.push_back(partner != nullptr ? static_cast<FaultyView*>(partner)->view_.get() : nullptr);
        }
        view_->Compose(inner);
    }
    void Cancel() override { view_->Cancel(); }
    void Close() noexcept override { view_->Close(); }
    [[nodiscard]] Value field(std::string_view name) const override { return view_->field(name); }
    void PutWithoutVerification(std::string_view name, const Value& value) override
    {
        view_->PutWithoutVerification(name, value);
    }

private:
    void call(const char* what) const { line_.call(what + (" " + id_)); }

    std::unique_ptr<View> view_;
    AccountingLine line_;
    std::string id_;
};

class FaultySession final : public AccountingSession {
public:
    explicit FaultySession(AccountingLine line) : line_(std::move(line)) {}
    std::unique_ptr<View> OpenView(std::string_view view_id, std::string_view module_id) override
    {
        line_.call("OpenView " + std::string(view_id));
        return std::make_unique<FaultyView>(line_.session->OpenView(view_id, module_id), line_, view_id);
    }
    const CompanyInfo& Company() override { return line_.call("Company"), line_.session->Company(); }
    const CurrencyInfo& GetCurrency(std::string_view code) override
    {
        return line_.call("GetCurrency"), line_.session->GetCurrency(code);
    }
    const std::vector<ActiveApplication>& ActiveApplications() override
    {
        return line_.call("ActiveApplications"), line_.session->ActiveApplications();
    }
    std::vector<AccountingError>& Errors() override { return line_.session->Errors(); }

private:
    AccountingLine line_;
};

}  // namespace

std::shared_ptr<Connection> faulty(std::shared_ptr<Connection> connection, FaultPlan& plan)
{
    return std::make_shared<FaultyConnection>(std::move(connection), plan);
}

std::shared_ptr<AccountingSession> faulty(std::shared_ptr<AccountingSession> session, FaultPlan& plan)
{
    return std::make_shared<FaultySession>(AccountingLine{std::move(session), plan});
}

std::vector<Printer> FaultyPrinters::list() const
{
    if (plan_.fails("step")) throw Fault(fault::kPrinter, kPrinterWords);
    return {{"cups", "Front", "a"}, {"cups", "Office", "b"}};
}

int32_t FaultyPrinters::print(const PrintJob& job)
{
    if (plan_.fails("step") || std::filesystem::file_size(job.file) == 0) throw Fault(fault::kPrinter, kPrinterWords);
    return static_cast<int32_t>(++printed_);
}

void FaultyMail::Send(const MailProperties&, MailEvents& events)
{
    for (const int32_t percent : {0, 50, 100}) {
        if (plan_.fails("step")) return events.SendFailed(kMailWords);
        events.Status("On the way");
        events.Progress(percent);
    }
    if (plan_.fails("step")) throw Fault(fault::kCannotCreate, kMailWords);
    ++sent_;
    events.SendSuccesful();
}

}  // namespace velora::testing
