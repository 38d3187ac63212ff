#include "adapters/sqlite_core/database.h"

#include <sqlite3.h>

#include <filesystem>
#include <fstream>

#include "adapters/sqlite_core/query_guard.h"
#include "values/fault.h"

namespace velora::sqlite {

namespace {

// A connection belongs to one session, and that to one thread at a time: no lock is taken for each cell that is read.
constexpr int kOneThread = SQLITE_OPEN_NOMUTEX;

namespace fs = std::filesystem;

constexpr std::string_view kMagic("SQLite format 3\0", 16);
constexpr size_t kHeaderSize = 100;

Fault refusal(const std::string& path, const std::string& reason)
{
    return {fault::kPathAccess, "The database " + path + " cannot be opened: " + reason, path};
}

uint32_t big_endian(std::string_view header, size_t at, size_t bytes)
{
    uint32_t value = 0;
    for (size_t i = 0; i < bytes; ++i) value = value << 8 | static_cast<unsigned char>(header[at + i]);
    return value;
}

bool has_journal(const std::string& path)
{
    std::error_code ignored;
    return fs::exists(path + "-journal", ignored) || fs::exists(path + "-wal", ignored);
}

/// The file header of the published format: the page size at 16, the number of pages at 28, which holds when the
/// counters at 24 and 92 agree. A journal beside the file may still change its size.
void check_file(const std::string& path)
{
    std::error_code error;
    const auto status = fs::status(path, error);
    if (!fs::exists(status)) throw Fault(fault::kFileNotFound, "The database " + path + " does not exist", path);
    if (!fs::is_regular_file(status)) throw refusal(path, "it is not a file");

    std::ifstream file(path, std::ios::binary);
    if (!file) throw refusal(path, "it may not be read");
    std::string header(kHeaderSize, '\0');
    file.read(header.data(), static_cast<std::streamsize>(header.size()));
    if (file.gcount() == 0) throw refusal(path, "the file is empty");
    if (!header.starts_with(kMagic.substr(0, static_cast<size_t>(file.gcount())))) {
        throw refusal(path, "the file is not a database");
    }
    if (file.gcount() < static_cast<std::streamsize>(kHeaderSize)) throw refusal(path, "the file is truncated");

    const uint64_t page_size = big_endian(header, 16, 2) == 1 ? 65536 : big_endian(header, 16, 2);
    const bool is_counted = big_endian(header, 24, 4) == big_endian(header, 92, 4);
    const uint64_t expected = page_size * big_endian(header, 28, 4);
    if (is_counted && fs::file_size(path, error) < expected && !has_journal(path)) {
        throw refusal(path, "the file is truncated");
    }
}

std::string reason_of(int code, const std::string& message)
{
    switch (code & 0xff) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return "it is locked by another program";
        case SQLITE_NOTADB:
            return "the file is not a database";
        case SQLITE_CORRUPT:
            return "the file is damaged (" + message + ")";
        default:
            return message;
    }
}

}  // namespace

Database::Database(sqlite3* handle) : handle_(handle) {}
Database::Database(Database&&) noexcept = default;
Database& Database::operator=(Database&&) noexcept = default;
Database::~Database() = default;

Database Database::open(const std::string& path, const Options& options)
{
    check_file(path);
    sqlite3* handle = nullptr;
    const int flags = options.access == Access::Guarded ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
    const int status = sqlite3_open_v2(fs::absolute(path).c_str(), &handle, flags | kOneThread, nullptr);
    Database database(handle);
    if (status != SQLITE_OK) throw refusal(path, sqlite3_errstr(status));
    try {
        database.set_up(options);
        database.run("SELECT count(*) FROM sqlite_master");
        if (options.access == Access::QueryOnly) database.run("PRAGMA query_only = 1");
        if (options.access == Access::Guarded) {
            database.guard_ = std::make_unique<QueryGuard>(options.limits);
            database.guard_->watch(handle);
        }
    } catch (const DriverError& error) {
        throw refusal(path, reason_of(error.code(), error.what()));
    }
    return database;
}

Database Database::create(const std::string& path)
{
    sqlite3* handle = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | kOneThread;
    const int status = sqlite3_open_v2(fs::absolute(path).c_str(), &handle, flags, nullptr);
    Database database(handle);
    if (status != SQLITE_OK) throw DriverError(status, sqlite3_errstr(status));
    database.set_up({});
    return database;
}

Database Database::memory(const Options& options)
{
    sqlite3* handle = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY | kOneThread;
    const int status = sqlite3_open_v2(":memory:", &handle, flags, nullptr);
    Database database(handle);
    if (status != SQLITE_OK) throw DriverError(status, sqlite3_errstr(status));
    database.set_up(options);
    return database;
}

void Database::run(const std::string& sql) const
{
    if (sqlite3_exec(handle(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw DriverError(sqlite3_extended_errcode(handle()), sqlite3_errmsg(handle()));
    }
}

void Database::set_up(const Options& options) const
{
    sqlite3_busy_timeout(handle(), options.busy_milliseconds);
    sqlite3_extended_result_codes(handle(), 1);
    sqlite3_db_config(handle(), SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(handle(), SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    sqlite3_db_config(handle(), SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_limit(handle(), SQLITE_LIMIT_ATTACHED, 0);
    add_date_collation(handle(), options.date_order);
}

void Database::Close::operator()(sqlite3* database) const noexcept
{
    sqlite3_close_v2(database);
}

}  // namespace velora::sqlite
