#include "session/error_messengers.h"

#include "values/text.h"

namespace velora {

namespace {

constexpr std::string_view kReportingError = "Reporting Error";
constexpr std::string_view kContact = "Please contact Morvane if this error occurs frequently.";
constexpr std::string_view kSeparator = "\r\n\t   ";

void show(SessionState& state, std::string_view title, std::string text)
{
    tell(state, {std::string(title), std::move(text), Icon::Exclamation});
}

std::string in_procedure(std::string_view head, std::string_view procedure)
{
    return std::string(head)
        .append("\r\n\nIn Procedure: VL Report.")
        .append(procedure)
        .append(".\r\n\n")
        .append(kContact);
}

void show_fault(SessionState& state, int32_t number, std::string_view description, std::string_view procedure)
{
    show(state, kReportingError, in_procedure(std::to_string(number) + ": " + std::string(description), procedure));
}

/// A driver's message with its bracketed prefixes on lines of their own.
std::string bracket_lines(std::string_view description)
{
    std::string text;
    if (description.empty()) return text;
    while (true) {
        const auto end = description.find(']');
        std::string piece(trimmed(description.substr(0, end)));
        if (piece.starts_with('[')) piece.push_back(']');
        text.append(piece).append(kSeparator);
        if (end == std::string_view::npos) return text;
        description.remove_prefix(end + 1);
    }
}

void show_session_errors(SessionState& state, std::string_view procedure)
{
    auto& errors = accounting(state).Errors();
    for (size_t at = 0; at < errors.size(); ++at) {
        if (at >= 3 && at + 2 < errors.size()) continue;  // the middle of a long stack is passed over
        const std::string head = std::to_string(errors[at].Priority) + ": " + errors[at].Description;
        show(state, "Sage Accpac Error", in_procedure(head, procedure));
    }
    errors.clear();
}

void show_connection_errors(SessionState& state, std::string_view procedure)
{
    auto& errors = connection(state).Errors();
    std::string message;  // not reset between errors on purpose: the last box shows all of them
    for (const auto& error : errors) {
        message.append(bracket_lines(error.Description)).append(kSeparator);
        message.append("(Source\t\t: ").append(error.Source).append(")").append(kSeparator);
        message.append("(SQL State\t: ").append(error.SQLState).append(")").append(kSeparator);
        message.append("(NativeError\t: ").append(std::to_string(error.NativeError)).append(")");
        show(state, "ADO Database Error",
             std::string(message).append("\r\n\nIn Procedure: ").append(procedure).append(".\r\n").append(kContact));
    }
    errors.clear();
}

}  // namespace

void tell(SessionState& state, const MessageBox& box)
{
    if (state.ports.user != nullptr) state.ports.user->show(box);
}

void ErrorMessenger(SessionState& state, int32_t pErrNum, std::string_view pErrDesc, std::string_view pProcName)
{
    if (pErrNum == 0) return;
    with_failure_path(state, show_fault, "modGeneral.ErrorMessenger",
                      [&] { show_fault(state, pErrNum, pErrDesc, pProcName); });
}

void ErrorACCPAC(SessionState& state, int32_t pErrNum, std::string_view pErrDesc, std::string_view pProcName)
{
    with_failure_path(state, ErrorMessenger, "modGeneral.ErrorACCPAC", [&] {
        if (accounting(state).Errors().empty()) return ErrorMessenger(state, pErrNum, pErrDesc, pProcName);
        show_session_errors(state, pProcName);
    });
}

void ErrorADO(SessionState& state, int32_t pErrNum, std::string_view pErrDesc, std::string_view pProcName)
{
    with_failure_path(state, ErrorMessenger, "modGeneral.ErrorADO", [&] {
        if (connection(state).Errors().empty()) return ErrorMessenger(state, pErrNum, pErrDesc, pProcName);
        show_connection_errors(state, pProcName);
    });
}

}  // namespace velora
