#include "adapters/odbc/driver_manager.h"

namespace velora::odbc {

const DriverManager& DriverManager::get()
{
    static const DriverManager loaded;  // a failed load is tried again at the next call
    return loaded;
}

}  // namespace velora::odbc
