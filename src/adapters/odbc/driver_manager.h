#pragma once

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include "values/loaded_library.h"

namespace velora::odbc {

/// The functions of the system's driver manager, which is loaded when a server is first asked for.
struct DriverManager {
    /// @throws Fault 429 on a machine without it
    static const DriverManager& get();

    LoadedLibrary library{"libodbc.so.2",
                          "Database servers are reached through ODBC, and its driver manager (Debian's package "
                          "libodbc2) cannot be loaded"};

    // clang-format off
    decltype(SQLAllocHandle)*    alloc_handle     = library.function<decltype(SQLAllocHandle)>("SQLAllocHandle");
    decltype(SQLFreeHandle)*     free_handle      = library.function<decltype(SQLFreeHandle)>("SQLFreeHandle");
    decltype(SQLSetEnvAttr)*     set_environment  = library.function<decltype(SQLSetEnvAttr)>("SQLSetEnvAttr");
    decltype(SQLDriverConnectW)* connect          = library.function<decltype(SQLDriverConnectW)>("SQLDriverConnectW");
    decltype(SQLDisconnect)*     disconnect       = library.function<decltype(SQLDisconnect)>("SQLDisconnect");
    decltype(SQLSetConnectAttr)* set_connection   = library.function<decltype(SQLSetConnectAttr)>("SQLSetConnectAttr");
    decltype(SQLGetConnectAttr)* get_connection   = library.function<decltype(SQLGetConnectAttr)>("SQLGetConnectAttr");
    decltype(SQLGetInfoW)*       get_info         = library.function<decltype(SQLGetInfoW)>("SQLGetInfoW");
    decltype(SQLGetDiagRecW)*    diagnostic       = library.function<decltype(SQLGetDiagRecW)>("SQLGetDiagRecW");
    decltype(SQLSetStmtAttr)*    set_statement    = library.function<decltype(SQLSetStmtAttr)>("SQLSetStmtAttr");
    decltype(SQLPrepareW)*       prepare          = library.function<decltype(SQLPrepareW)>("SQLPrepareW");
    decltype(SQLBindParameter)*  bind_parameter   = library.function<decltype(SQLBindParameter)>("SQLBindParameter");
    decltype(SQLExecute)*        execute          = library.function<decltype(SQLExecute)>("SQLExecute");
    decltype(SQLExecDirectW)*    execute_directly = library.function<decltype(SQLExecDirectW)>("SQLExecDirectW");
    decltype(SQLNumResultCols)*  column_count     = library.function<decltype(SQLNumResultCols)>("SQLNumResultCols");
    decltype(SQLDescribeColW)*   describe         = library.function<decltype(SQLDescribeColW)>("SQLDescribeColW");
    decltype(SQLBindCol)*        bind_column      = library.function<decltype(SQLBindCol)>("SQLBindCol");
    decltype(SQLFetch)*          fetch            = library.function<decltype(SQLFetch)>("SQLFetch");
    decltype(SQLGetData)*        get_data         = library.function<decltype(SQLGetData)>("SQLGetData");
    decltype(SQLMoreResults)*    more_results     = library.function<decltype(SQLMoreResults)>("SQLMoreResults");
    decltype(SQLFreeStmt)*       free_statement   = library.function<decltype(SQLFreeStmt)>("SQLFreeStmt");
    decltype(SQLCancel)*         cancel           = library.function<decltype(SQLCancel)>("SQLCancel");
    decltype(SQLEndTran)*        end_transaction  = library.function<decltype(SQLEndTran)>("SQLEndTran");
    // clang-format on
};

}  // namespace velora::odbc
