#pragma once

#include <span>
#include <string_view>

namespace velora::stores {

/// A stored procedure of the servers that speak the SQL Server dialect.
struct Procedure {
    std::string_view name;
    std::string_view parameter;  ///< name of the one input; empty for none
    int text_size = 0;           ///< of an input that is a text, in characters; 0 for a 32-bit integer
    std::string_view statement;  ///< its query; the input stands in it as a colon and its name
};

std::span<const Procedure> procedures();

/// None for a name that the servers do not have.
const Procedure* find_procedure(std::string_view name);

}  // namespace velora::stores
