#pragma once

#include <chrono>
#include <string>

#include "adapters/odbc/statement.h"

namespace velora::odbc {

/// Bounds the work of the statements of one reader: all of them together may take the time of the limits.
class ReaderGuard {
public:
    explicit ReaderGuard(QueryLimits limits) : limits_(std::move(limits)), left_(limits_.time) {}

    /// Runs the statement while the limits are watched. @throws DriverError saying which of them was met
    void execute(Statement& statement, const std::string& text);

private:
    QueryLimits limits_;
    std::chrono::steady_clock::duration left_;
};

}  // namespace velora::odbc
