#include "adapters/odbc/link.h"

#include <algorithm>
#include <array>

#include "values/fault.h"

namespace velora::odbc {

namespace {

/// The class 08 of states, and those by which servers tell that they shut down.
bool tells_loss(const DatabaseError& record)
{
    constexpr auto kShutdown = std::to_array<std::string_view>({"57P01", "57P02", "57P03"});
    constexpr auto kGone = std::to_array<int32_t>({2006, 2013, 4031});  // MariaDB's own, under a general state
    return record.SQLState.starts_with("08") || std::ranges::find(kShutdown, record.SQLState) != kShutdown.end() ||
           std::ranges::find(kGone, record.NativeError) != kGone.end();
}

class ServerSnapshot final : public Snapshot {
public:
    explicit ServerSnapshot(std::shared_ptr<Link> link) : link_(std::move(link)) {}
    ServerSnapshot(const ServerSnapshot&) = delete;
    ServerSnapshot& operator=(const ServerSnapshot&) = delete;
    ~ServerSnapshot() override { link_->end(); }

private:
    std::shared_ptr<Link> link_;
};

}  // namespace

Link::Link(std::string connection_string, const Session::Options& options)
    : connection_string_(std::move(connection_string)), options_(options)
{
    connect();
}

void Link::connect()
{
    pool_.reset();
    pool_ = std::make_shared<StatementPool>(std::make_shared<Session>(connection_string_, options_));
    is_lost_ = false;
}

StatementPool& Link::pool()
{
    if (is_lost_ && in_transaction_) {
        throw DriverError("08S01", "The connection to the server was lost while the document was being read.");
    }
    if (is_lost_ || !pool_) connect();
    return *pool_;
}

void Link::notice(const DriverError& error)
{
    if (is_lost_ || !pool_) return;
    is_lost_ = std::ranges::any_of(error.records(), tells_loss) || pool_->source()->is_dead();
}

void Link::begin(Session::Purpose purpose)
{
    session().begin(purpose);
    in_transaction_ = true;
}

void Link::end() noexcept
{
    in_transaction_ = false;
    if (!is_lost_ && pool_) pool_->source()->roll_back();
}

std::unique_ptr<Snapshot> begin_snapshot(std::shared_ptr<Link> link)
{
    if (link->in_transaction()) return nullptr;
    link->begin(Session::Purpose::Snapshot);
    return std::make_unique<ServerSnapshot>(std::move(link));
}

std::shared_ptr<Link> open_link(const std::string& connection_string, const Session::Options& options)
{
    try {
        return std::make_shared<Link>(connection_string, options);
    } catch (const DriverError& error) {
        std::string words;
        for (const auto& record : error.records()) words += (words.empty() ? "" : "\r\n") + record.Description;
        throw Fault(fault::kDatabase, words);
    }
}

}  // namespace velora::odbc
