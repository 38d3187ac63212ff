#pragma once

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

namespace velora::odbc {

/// The functions of the system's driver manager. It is loaded when a server is first asked for, so that a program that
/// works on files never pays for it and runs where there is none.
struct DriverManager {
    decltype(&SQLAllocHandle) alloc_handle;
    decltype(&SQLFreeHandle) free_handle;
    decltype(&SQLSetEnvAttr) set_environment;
    decltype(&SQLDriverConnectW) connect;
    decltype(&SQLDisconnect) disconnect;
    decltype(&SQLSetConnectAttr) set_connection;
    decltype(&SQLGetConnectAttr) get_connection;
    decltype(&SQLGetInfoW) get_info;
    decltype(&SQLGetDiagRecW) diagnostic;
    decltype(&SQLSetStmtAttr) set_statement;
    decltype(&SQLPrepareW) prepare;
    decltype(&SQLBindParameter) bind_parameter;
    decltype(&SQLExecute) execute;
    decltype(&SQLExecDirectW) execute_directly;
    decltype(&SQLNumResultCols) column_count;
    decltype(&SQLDescribeColW) describe;
    decltype(&SQLBindCol) bind_column;
    decltype(&SQLFetch) fetch;
    decltype(&SQLGetData) get_data;
    decltype(&SQLMoreResults) more_results;
    decltype(&SQLFreeStmt) free_statement;
    decltype(&SQLCancel) cancel;
    decltype(&SQLEndTran) end_transaction;

    /// @throws Fault 429 where the machine has no driver manager, with what to install
    static const DriverManager& get();
};

}  // namespace velora::odbc
