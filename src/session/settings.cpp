#include "session/settings.h"

#include <filesystem>

#include "session/error_messengers.h"

namespace velora {

namespace {

constexpr std::string_view kApplication = "Morvane\\Velora";

PasswordCipher& password_cipher(SessionState& state)
{
    if (state.ports.cipher == nullptr) throw fault::of(fault::kCannotCreate, "PasswordCipher");
    return *state.ports.cipher;
}

}  // namespace

std::string setting(SessionState& state, std::string_view key, std::string_view otherwise)
{
    if (state.ports.settings == nullptr) throw fault::object_not_set("settings");
    return state.ports.settings->get(kApplication, state.gReportSection, key, otherwise);
}

void save_settings(SessionState& state, std::span<const NamedText> values)
{
    if (state.ports.settings == nullptr) throw fault::object_not_set("settings");
    state.ports.settings->set_all(kApplication, state.gReportSection, values);
}

std::string Encrypt(SessionState& state, std::string_view pText)
{
    return with_failure_path(state, ErrorMessenger, "modGeneral.Encrypt",
                             [&] { return password_cipher(state).scramble(pText); });
}

std::string Decrypt(SessionState& state, std::string_view pText)
{
    return with_failure_path(state, ErrorMessenger, "modGeneral.Decrypt",
                             [&] { return password_cipher(state).unscramble(pText); });
}

std::string application_path(const SessionState& state, std::string_view folder, std::string_view file)
{
    constexpr char separator = static_cast<char>(std::filesystem::path::preferred_separator);
    std::string path = state.ports.application_folder;
    for (const auto part : {folder, file}) {
        if (!part.empty()) path.append(1, separator).append(part);
    }
    return path;
}

}  // namespace velora
