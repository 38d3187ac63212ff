#pragma once

#include <memory>
#include <new>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace velora {

/// The prepared statements of a database by their text. A statement is lent to one user at a time and comes back when
/// the loan ends; the pool lives until the last loan has ended. `Driver` says what a `Source` (of which statements
/// are made, and which outlives them) and a `Statement` are, how one is `prepared`, how its run is ended by `end_run`,
/// and how many idle ones are kept (`kMostIdle`): texts that carry their values are all different.
template <class Driver>
class StatementPool : public std::enable_shared_from_this<StatementPool<Driver>> {
public:
    using Source = typename Driver::Source;
    using Statement = typename Driver::Statement;

    class Loan {
    public:
        /// @param pool  none for a statement that is used once
        Loan(std::shared_ptr<StatementPool> pool, std::string text, std::unique_ptr<Statement> statement)
            : pool_(std::move(pool)), text_(std::move(text)), statement_(std::move(statement))
        {
        }
        Loan(Loan&&) noexcept = default;
        Loan& operator=(Loan&&) = delete;
        ~Loan()
        {
            if (statement_ && pool_) pool_->take_back(text_, std::move(statement_));
        }

        Statement* operator->() const { return statement_.get(); }
        Statement& operator*() const { return *statement_; }
        [[nodiscard]] const std::string& text() const { return text_; }

    private:
        std::shared_ptr<StatementPool> pool_;
        std::string text_;
        std::unique_ptr<Statement> statement_;
    };

    explicit StatementPool(Source source) : source_(std::move(source)) {}

    [[nodiscard]] const Source& source() const { return source_; }
    /// @throws DriverError when the text cannot be prepared
    Loan lend(std::string text)
    {
        const auto found = idle_.find(text);
        if (found == idle_.end() || found->second.empty()) {
            auto statement = Driver::prepared(source_, text);
            return {this->shared_from_this(), std::move(text), std::move(statement)};
        }
        auto statement = std::move(found->second.back());
        found->second.pop_back();
        --idle_count_;
        return {this->shared_from_this(), std::move(text), std::move(statement)};
    }

private:
    void take_back(const std::string& text, std::unique_ptr<Statement> statement) noexcept
    {
        Driver::end_run(*statement);
        try {
            if (idle_count_ >= Driver::kMostIdle) {
                idle_.clear();
                idle_count_ = 0;
            }
            idle_[text].push_back(std::move(statement));
            ++idle_count_;
        } catch (const std::bad_alloc&) {
            statement.reset();  // prepared again the next time
        }
    }

    Source source_;
    std::unordered_map<std::string, std::vector<std::unique_ptr<Statement>>> idle_;
    size_t idle_count_ = 0;
};

}  // namespace velora
