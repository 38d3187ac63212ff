#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "adapters/odbc/statement.h"

namespace velora::odbc {

/// The prepared statements of a session by their text. A statement is lent to one user at a time and comes back when
/// the loan ends.
class StatementPool : public std::enable_shared_from_this<StatementPool> {
public:
    class Loan {
    public:
        Loan(std::shared_ptr<StatementPool> pool, std::string text, std::unique_ptr<Statement> statement)
            : pool_(std::move(pool)), text_(std::move(text)), statement_(std::move(statement))
        {
        }
        Loan(Loan&&) noexcept = default;
        Loan& operator=(Loan&&) = delete;
        ~Loan() { give_back(); }

        Statement* operator->() const { return statement_.get(); }
        Statement& operator*() const { return *statement_; }
        [[nodiscard]] const std::string& text() const { return text_; }

    private:
        void give_back() noexcept;

        std::shared_ptr<StatementPool> pool_;  ///< none for a statement that is used once
        std::string text_;
        std::unique_ptr<Statement> statement_;
    };

    explicit StatementPool(std::shared_ptr<Session> session) : session_(std::move(session)) {}

    [[nodiscard]] const std::shared_ptr<Session>& session() const { return session_; }
    /// A prepared statement. @throws DriverError
    Loan lend(const std::string& text);
    /// A statement that is run once, and prepared nowhere. @throws DriverError
    Loan once(const std::string& text) { return {nullptr, text, std::make_unique<Statement>(session_)}; }

private:
    std::shared_ptr<Session> session_;
    std::unordered_map<std::string, std::vector<std::unique_ptr<Statement>>> idle_;
    size_t idle_count_ = 0;
};

}  // namespace velora::odbc
