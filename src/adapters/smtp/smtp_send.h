#pragma once

#include <chrono>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "adapters/smtp/checked_mail.h"
#include "adapters/smtp/curl_library.h"
#include "adapters/smtp/mail_server_rules.h"
#include "adapters/smtp/smtp_talk.h"
#include "platform/mail_transport.h"

namespace velora::smtp {

/// One message on its way to one server.
class SmtpSend {
public:
    /// @throws Fault 429 on a machine without libcurl
    SmtpSend(const CheckedMail& mail, const MailProperties& properties, const std::string& message,
             const MailServerRules& rules, MailEvents& events);
    ~SmtpSend();
    SmtpSend(const SmtpSend&) = delete;
    SmtpSend& operator=(const SmtpSend&) = delete;

    /// Returns when the message is through, has failed or was cancelled; the first two have had their event.
    void run();

private:
    using Instant = std::chrono::steady_clock::time_point;

    // What libcurl calls; none of them throws, and none runs code of the windows.
    static size_t on_read(char* into, size_t size, size_t count, void* self) noexcept;
    static int on_debug(CURL* handle, curl_infotype sort, char* bytes, size_t size, void* self) noexcept;
    static curl_socket_t on_open_socket(void* self, curlsocktype purpose, curl_sockaddr* address) noexcept;
    static int on_close_socket(void* self, curl_socket_t open) noexcept;

    template <class Value>
    void set(CURLoption option, Value value);
    void set_up();
    void set_up_login();
    size_t give(char* into, size_t room);
    void follow(curl_infotype sort, std::string_view line);
    void note_percent(size_t bytes_out);
    void tell_events();
    /// The end of the transfer; none after a cancel.
    std::optional<CURLcode> transfer();
    [[nodiscard]] bool is_silent_too_long() const;
    void finish(CURLcode code);
    [[nodiscard]] std::string reason(CURLcode code) const;
    [[nodiscard]] std::string reason_by_code(CURLcode code) const;

    const CurlLibrary& curl_ = CurlLibrary::loaded();
    const CheckedMail& mail_;
    const MailProperties& properties_;
    const std::string& message_;
    const MailServerRules& rules_;
    MailEvents& events_;

    SmtpTalk talk_;
    /// What is still to be told: a percent, or a line.
    struct Event {
        int32_t percent;
        std::string line;
    };
    std::vector<Event> pending_;
    int32_t percent_ = -1;
    size_t given_ = 0;  ///< bytes of the message that libcurl has
    Instant latest_sign_ = std::chrono::steady_clock::now();
    bool met_remote_address_ = false;
    std::set<curl_socket_t> sockets_;  ///< that are open
    char error_[CURL_ERROR_SIZE] = {};

    CURL* handle_ = nullptr;
    CURLM* transfers_ = nullptr;
    curl_slist* recipients_ = nullptr;
};

}  // namespace velora::smtp
