#pragma once

#include <memory>
#include <string>

#include "platform/stores.h"

namespace velora {

/// The user's settings in one ini file. The file belongs to the application, so that its sections are the settings'
/// sections. The first value makes the file and its folder.
std::unique_ptr<SettingsStore> ini_settings(std::string path);

/// Ini files read as through a buffer of 256 characters: of a longer value the first 256 are given.
std::unique_ptr<ProfileFile> ini_profiles();

}  // namespace velora
