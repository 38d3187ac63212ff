#include "support/recording.h"

#include <algorithm>

namespace velora::test {

namespace {

std::string shown(const Command& command)
{
    std::string line = command.kind == Command::Kind::StoredProcedure ? "CALL " + command.text : command.text;
    for (const auto& parameter : command.parameters) {
        line += " @" + parameter.name + ":" + std::to_string(static_cast<int>(parameter.type)) + ":" +
                std::to_string(parameter.size) + "=" + to_text(parameter.value);
    }
    return line;
}

class RecordingConnection final : public Connection {
public:
    RecordingConnection(std::shared_ptr<Connection> connection, Calls& calls)
        : connection_(std::move(connection)), calls_(calls)
    {
    }
    std::unique_ptr<Recordset> Open(const Command& command) override
    {
        calls_.push_back("open " + shown(command));
        return connection_->Open(command);
    }
    std::unique_ptr<Rows> Stream(const Command& command) override
    {
        calls_.push_back("stream " + shown(command));
        return connection_->Stream(command);
    }
    std::unique_ptr<Rows> Execute(std::string_view text) override
    {
        calls_.push_back("execute " + std::string(text));
        return connection_->Execute(text);
    }
    std::vector<DatabaseError>& Errors() override { return connection_->Errors(); }
    std::unique_ptr<Connection> open_reader(const QueryLimits& limits) override
    {
        return connection_->open_reader(limits);
    }

private:
    std::shared_ptr<Connection> connection_;
    Calls& calls_;
};

/// Writes its line when it is closed. A field that is read again is not told again.
class RecordingView final : public View {
public:
    RecordingView(std::unique_ptr<View> view, std::string name, Calls& calls)
        : view_(std::move(view)), line_(name), name_(std::move(name)), calls_(calls)
    {
    }
    void Init() override { note("Init"), view_->Init(); }
    void Order(int key) override { note("Order " + std::to_string(key)), view_->Order(key); }
    void Browse(std::string_view filter, bool ascending) override
    {
        note("Browse <" + std::string(filter) + (ascending ? "> up" : "> down"));
        view_->Browse(filter, ascending);
    }
    bool Fetch() override { return answered("Fetch", view_->Fetch()); }
    bool Read() override { return answered("Read", view_->Read()); }
    void Compose(std::span<View* const> partners) override
    {
        std::string slots;
        std::vector<View*> inner;
        for (View* partner : partners) {
            auto* recorded = static_cast<RecordingView*>(partner);
            slots += recorded == nullptr ? " -" : " " + recorded->name_.substr(0, 6);
            inner.push_back(recorded == nullptr ? nullptr : recorded->view_.get());
        }
        note("Compose" + slots);
        view_->Compose(inner);
    }
    void Cancel() override { note("Cancel"), view_->Cancel(); }
    void Close() noexcept override
    {
        calls_.push_back(line_);
        view_->Close();
    }
    [[nodiscard]] Value field(std::string_view name) const override
    {
        if (std::ranges::find(read_, name) == read_.end()) {
            read_.emplace_back(name);
            line_.append(" ").append(name);
        }
        return view_->field(name);
    }
    void PutWithoutVerification(std::string_view name, const Value& value) override
    {
        note("Put " + std::string(name) + "=" + to_text(value));
        view_->PutWithoutVerification(name, value);
    }

private:
    void note(const std::string& call) { line_ += "; " + call; }
    bool answered(const std::string& call, bool answer)
    {
        note(call + (answer ? "+" : "-"));
        return answer;
    }

    std::unique_ptr<View> view_;
    mutable std::string line_;
    mutable std::vector<std::string> read_;
    std::string name_;
    Calls& calls_;
};

class RecordingSession final : public AccountingSession {
public:
    RecordingSession(std::shared_ptr<AccountingSession> session, Calls& calls)
        : session_(std::move(session)), calls_(calls)
    {
    }
    std::unique_ptr<View> OpenView(std::string_view view_id, std::string_view module_id) override
    {
        return std::make_unique<RecordingView>(session_->OpenView(view_id, module_id),
                                               std::string(view_id) + " of " + std::string(module_id), calls_);
    }
    const CompanyInfo& Company() override { return session_->Company(); }
    const CurrencyInfo& GetCurrency(std::string_view code) override { return session_->GetCurrency(code); }
    const std::vector<ActiveApplication>& ActiveApplications() override { return session_->ActiveApplications(); }
    std::vector<AccountingError>& Errors() override { return session_->Errors(); }

private:
    std::shared_ptr<AccountingSession> session_;
    Calls& calls_;
};

}  // namespace

std::shared_ptr<Connection> recording(std::shared_ptr<Connection> connection, Calls& calls)
{
    return std::make_shared<RecordingConnection>(std::move(connection), calls);
}

std::shared_ptr<AccountingSession> recording(std::shared_ptr<AccountingSession> session, Calls& calls)
{
    return std::make_shared<RecordingSession>(std::move(session), calls);
}

}  // namespace velora::test
