#include "adapters/sqlite_core/query_guard.h"

#include <sqlite3.h>

#include <array>
#include <string_view>

namespace velora::sqlite {

namespace {

constexpr int kOperationsBetweenLooks = 10'000;  // well under a millisecond

// No text, pattern or statement of a report comes near these; without them one function call could run for hours.
constexpr int kLongestText = 1'000'000;
constexpr int kLongestPattern = 1'000;
constexpr int64_t kMostMemory = int64_t{256} << 20;  // of all connections of the process; nested queries multiply

struct Refused {
    int action;
    std::string_view what;
};

constexpr auto kRefused = std::to_array<Refused>({
    {SQLITE_DELETE, "DELETE"},
    {SQLITE_INSERT, "INSERT"},
    {SQLITE_UPDATE, "UPDATE"},
    {SQLITE_PRAGMA, "PRAGMA"},
    {SQLITE_ATTACH, "ATTACH"},
    {SQLITE_DETACH, "DETACH"},
    {SQLITE_TRANSACTION, "a transaction"},
    {SQLITE_SAVEPOINT, "a savepoint"},
    {SQLITE_ANALYZE, "ANALYZE"},
    {SQLITE_REINDEX, "REINDEX"},
    {SQLITE_ALTER_TABLE, "ALTER"},
});

/// What the statement wants to do, in the word of its author; all that is left makes or drops something.
std::string_view name_of(int action)
{
    for (const auto& refused : kRefused) {
        if (refused.action == action) return refused.what;
    }
    return "a statement that changes the database";
}

}  // namespace

QueryGuard::Work::Work(QueryGuard* guard) : guard_(guard)
{
    if (guard_ == nullptr) return;
    guard_->reason_.clear();
    guard_->begun_ = Steady::now();
}

QueryGuard::Work::~Work()
{
    if (guard_ != nullptr) guard_->left_ -= Steady::now() - guard_->begun_;
}

QueryGuard::~QueryGuard()
{
    if (memory_before_ >= 0) sqlite3_hard_heap_limit64(memory_before_);
}

void QueryGuard::watch(sqlite3* database)
{
    sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_limit(database, SQLITE_LIMIT_LENGTH, kLongestText);
    sqlite3_limit(database, SQLITE_LIMIT_LIKE_PATTERN_LENGTH, kLongestPattern);
    memory_before_ = sqlite3_hard_heap_limit64(kMostMemory);
    sqlite3_set_authorizer(database, &QueryGuard::allow, this);
    sqlite3_progress_handler(database, kOperationsBetweenLooks, &QueryGuard::go_on, this);
}

int QueryGuard::allow(void* guard, int action, const char* table, const char* function, const char*, const char*)
{
    const bool loads = action == SQLITE_FUNCTION && sqlite3_stricmp(function, "load_extension") == 0;
    const bool reads = action == SQLITE_SELECT || action == SQLITE_READ || action == SQLITE_RECURSIVE;
    // json_each and its like declare their columns so; the table itself can be written by nobody.
    const bool declares = action == SQLITE_UPDATE && sqlite3_stricmp(table, "sqlite_master") == 0;
    if (reads || declares || (action == SQLITE_FUNCTION && !loads)) return SQLITE_OK;
    auto& self = *static_cast<QueryGuard*>(guard);
    self.reason_ = "A report's query may only read, and this one holds " +
                   std::string(loads ? "load_extension" : name_of(action)) + ".";
    return SQLITE_DENY;
}

int QueryGuard::go_on(void* guard)
{
    auto& self = *static_cast<QueryGuard*>(guard);
    if (self.limits_.cancelled && self.limits_.cancelled()) {
        self.reason_ = "The report's query was cancelled.";
    } else if (self.limits_.time.count() > 0 && Steady::now() - self.begun_ > self.left_) {
        const auto seconds = std::chrono::duration<double>(self.limits_.time).count();
        self.reason_ = "The report's query was stopped: it had worked for " +
                       std::to_string(static_cast<int64_t>(seconds)) + " seconds and was not done.";
    } else {
        return 0;
    }
    return 1;
}

}  // namespace velora::sqlite
