#pragma once

#include <stdexcept>
#include <string>

namespace velora {

/// How the program ends.
enum class ExitStatus : int {
    Delivered = 0,
    Told = 1,    ///< a message box said why not
    Usage = 2,   ///< the command line is wrong
    NoData = 3,  ///< there was nothing to put on the report
    DeliveredWithBoxes = 4,
};

/// The worse of two documents' ends, which decides for a run of several.
constexpr ExitStatus worse_of(ExitStatus a, ExitStatus b)
{
    for (const auto status :
         {ExitStatus::Usage, ExitStatus::Told, ExitStatus::DeliveredWithBoxes, ExitStatus::NoData}) {
        if (a == status || b == status) return status;
    }
    return ExitStatus::Delivered;
}

/// Something that the host cannot go on with: what, where, and how to mend it. Shown as a message box.
class HostError : public std::runtime_error {
public:
    HostError(std::string title, const std::string& text) : std::runtime_error(text), title_(std::move(title)) {}
    [[nodiscard]] const std::string& title() const noexcept { return title_; }

private:
    std::string title_;
};

/// A command line that asks for what does not go together.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace velora
