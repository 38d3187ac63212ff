#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "platform/stores.h"

namespace velora {

struct NewFolder {
    std::filesystem::path folder;
    std::filesystem::path definitions;  ///< the shipped report definitions, which are copied
    bool empty = false;                 ///< the same tables without rows
};

/// Makes an application folder that works with no server. It is made beside its place and renamed at the end, so that
/// a failure leaves nothing.
/// @param lists  writes the report list files
/// @throws HostError when the place is taken or cannot be written
void make_application_folder(const NewFolder& wanted, ProfileFile& lists);

}  // namespace velora
