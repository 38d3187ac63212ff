#include "adapters/odbc/statement_pool.h"

namespace velora::odbc {

namespace {

constexpr size_t kMostIdle = 64;  // each holds memory on the server too

}  // namespace

StatementPool::Loan StatementPool::lend(const std::string& text)
{
    const auto found = idle_.find(text);
    if (found != idle_.end() && !found->second.empty()) {
        auto statement = std::move(found->second.back());
        found->second.pop_back();
        --idle_count_;
        return {shared_from_this(), text, std::move(statement)};
    }
    auto statement = std::make_unique<Statement>(session_);
    statement->prepare(text);
    return {shared_from_this(), text, std::move(statement)};
}

void StatementPool::Loan::give_back() noexcept
{
    if (!statement_ || !pool_) return;
    statement_->close();
    try {
        if (pool_->idle_count_ >= kMostIdle) {
            pool_->idle_.clear();
            pool_->idle_count_ = 0;
        }
        pool_->idle_[text_].push_back(std::move(statement_));
        ++pool_->idle_count_;
    } catch (const std::bad_alloc&) {
        statement_.reset();  // prepared again the next time
    }
}

}  // namespace velora::odbc
