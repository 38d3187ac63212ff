#include "host/opened_definition.h"

#include <filesystem>

namespace velora {

std::shared_ptr<OpenedReport> open_definition_file(Host& host, const std::string& file)
{
    try {
        return host.engine().OpenReport(std::filesystem::absolute(file).string());
    } catch (const Fault& caught) {
        throw definition_error(file, "read", caught);
    }
}

HostError definition_error(const std::string& definition, const std::string& what, const Fault& caught)
{
    // Of a file that is none the number's text says nothing, and the reason everything.
    const bool has_reason = caught.number() == fault::kReportFile && !caught.where().empty();
    std::string text = "The definition \"" + definition + "\" cannot be " + what + ": ";
    text += has_reason ? caught.where() : caught.description();
    if (!has_reason && !caught.where().empty()) text += "\r\n" + caught.where();
    return {"Report Failure", text};
}

}  // namespace velora
