#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velora {

/// The files of a run by what it does with them, so that it never writes over what it reads, nor two outputs into one
/// file. Two names of one file are one file. A device such as /dev/null may be written to by anybody.
class FileRoles {
public:
    /// @param what  as a message says it: "the company's database"
    /// @throws UsageError when it is one of the outputs
    void reads(const std::filesystem::path& file, const std::string& what);
    /// @param what  the option that names it: "--output"
    /// @throws UsageError when the run reads it or writes something else into it
    void writes(const std::filesystem::path& file, const std::string& what);
    /// What the file is to this run; empty when it is nothing.
    [[nodiscard]] std::string role_of(const std::filesystem::path& file) const;

private:
    struct Role {
        std::filesystem::path file;
        std::string what;
        bool is_output;
    };

    void take(Role role);

    std::vector<Role> roles_;
};

}  // namespace velora
