#pragma once

#include <chrono>
#include <string>

namespace velora {

/// How mail servers are met.
struct MailServerRules {
    std::string certificate_authority;  ///< file of a private authority beside those of the system; blank: none
    std::chrono::seconds timeout{30};   ///< how long a server may keep silent
};

}  // namespace velora
