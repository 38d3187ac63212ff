#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "platform/stores.h"

namespace velora {

struct NewFolder {
    std::filesystem::path folder;
    std::filesystem::path definitions;  ///< the shipped report definitions, which are copied
    std::filesystem::path samples;      ///< the rows of the sample company; not read for an empty one
    bool empty = false;                 ///< the same tables without rows
};

/// Makes an application folder that works with no server. It is made beside its place and renamed at the end, so that
/// a failure leaves nothing.
/// @param lists  writes the report list files
/// @throws HostError when the place is taken or cannot be written
void make_application_folder(const NewFolder& wanted, ProfileFile& lists);

}  // namespace velora
