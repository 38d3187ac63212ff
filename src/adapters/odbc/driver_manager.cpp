#include "adapters/odbc/driver_manager.h"

#include <dlfcn.h>

#include <string>

#include "values/fault.h"

namespace velora::odbc {

namespace {

constexpr const char* kLibrary = "libodbc.so.2";

class Library {
public:
    Library() : handle_(::dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL))
    {
        if (handle_ == nullptr) refuse(::dlerror());
    }

    template <class Function>
    void find(Function& function, const char* name) const
    {
        function = reinterpret_cast<Function>(::dlsym(handle_, name));
        if (function == nullptr) refuse(::dlerror());
    }

private:
    [[noreturn]] static void refuse(const char* reason)
    {
        throw Fault(fault::kCannotCreate,
                    "Database servers are reached through the ODBC driver manager, which this machine does not have. "
                    "Install the package libodbc2 and the driver of the server. (" +
                        std::string(reason != nullptr ? reason : kLibrary) + ")",
                    kLibrary);
    }

    void* handle_;  // never closed: drivers leave threads and exit handlers behind
};

DriverManager load()
{
    const Library library;
    DriverManager made{};
    library.find(made.alloc_handle, "SQLAllocHandle");
    library.find(made.free_handle, "SQLFreeHandle");
    library.find(made.set_environment, "SQLSetEnvAttr");
    library.find(made.connect, "SQLDriverConnectW");
    library.find(made.disconnect, "SQLDisconnect");
    library.find(made.set_connection, "SQLSetConnectAttr");
    library.find(made.get_connection, "SQLGetConnectAttr");
    library.find(made.get_info, "SQLGetInfoW");
    library.find(made.diagnostic, "SQLGetDiagRecW");
    library.find(made.set_statement, "SQLSetStmtAttr");
    library.find(made.prepare, "SQLPrepareW");
    library.find(made.bind_parameter, "SQLBindParameter");
    library.find(made.execute, "SQLExecute");
    library.find(made.execute_directly, "SQLExecDirectW");
    library.find(made.column_count, "SQLNumResultCols");
    library.find(made.describe, "SQLDescribeColW");
    library.find(made.bind_column, "SQLBindCol");
    library.find(made.fetch, "SQLFetch");
    library.find(made.get_data, "SQLGetData");
    library.find(made.more_results, "SQLMoreResults");
    library.find(made.free_statement, "SQLFreeStmt");
    library.find(made.cancel, "SQLCancel");
    library.find(made.end_transaction, "SQLEndTran");
    return made;
}

}  // namespace

const DriverManager& DriverManager::get()
{
    static const DriverManager loaded = load();  // a failed load is tried again at the next call
    return loaded;
}

}  // namespace velora::odbc
