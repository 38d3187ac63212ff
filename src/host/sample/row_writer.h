#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "values/value.h"

struct sqlite3;
struct sqlite3_stmt;

namespace velora::sample {

/// A column's name beside its value.
using Cell = std::pair<std::string, Value>;
using Row = std::vector<Cell>;

/// Cents as the stores keep them.
inline double amount(int64_t cents)
{
    return static_cast<double>(cents) / 100.0;
}

/// A column of a numbered group, such as TEXTSTRE1.
inline std::string numbered(std::string_view name, int number)
{
    return std::string(name) + std::to_string(number);
}

inline void append(Row& row, const Row& more)
{
    row.insert(row.end(), more.begin(), more.end());
}

/// The same cell for each of five numbered columns.
template <class ValueOf>
void add_numbered(Row& row, std::string_view name, ValueOf value_of)
{
    for (int number = 1; number <= 5; ++number) row.emplace_back(numbered(name, number), Value(value_of(number - 1)));
}

/// Writes rows into a database that has its tables already; all of them in one transaction.
class RowWriter {
public:
    /// @param path of the file, which must exist
    /// @throws std::runtime_error with the driver's text; so do all calls below
    explicit RowWriter(const std::filesystem::path& path);
    ~RowWriter();
    RowWriter(const RowWriter&) = delete;
    RowWriter& operator=(const RowWriter&) = delete;

    void insert(std::string_view table, const Row& row);
    void commit();

private:
    struct CloseDatabase {
        void operator()(sqlite3* database) const noexcept;
    };
    struct FinalizeStatement {
        void operator()(sqlite3_stmt* statement) const noexcept;
    };
    using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

    sqlite3_stmt* prepared(const std::string& sql);
    void execute(const char* sql);
    [[noreturn]] void fail(std::string_view doing) const;

    std::unique_ptr<sqlite3, CloseDatabase> database_;
    std::map<std::string, Statement, std::less<>> statements_;
};

}  // namespace velora::sample
