#include "adapters/smtp/smtp_send.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <optional>
#include <utility>

namespace velora::smtp {
namespace {

constexpr int kPollMilliseconds = 50;   // how often the windows are asked
constexpr int kAnswersOfGreeting = 10;  // each within the time that a server has for one
constexpr size_t kSmallestPart = 1024;
constexpr int32_t kAll = 100;

bool is_loopback(const curl_sockaddr& address)
{
    constexpr unsigned char kLoopbackNet = 127;
    if (address.family == AF_INET) {
        sockaddr_in v4;
        std::memcpy(&v4, &address.addr, sizeof v4);
        return ntohl(v4.sin_addr.s_addr) >> 24 == kLoopbackNet;
    }
    if (address.family != AF_INET6) return false;
    sockaddr_in6 v6;
    static_assert(sizeof v6 <= sizeof(sockaddr_storage));
    std::memcpy(&v6, &address.addr, std::min<size_t>(sizeof v6, address.addrlen));
    return IN6_IS_ADDR_LOOPBACK(&v6.sin6_addr) ||
           (IN6_IS_ADDR_V4MAPPED(&v6.sin6_addr) && v6.sin6_addr.s6_addr[12] == kLoopbackNet);
}

std::string with_answer(const SmtpTalk::Refusal& refusal)
{
    return refusal.what + "\r\nThe server said: " + refusal.answer;
}

}  // namespace

SmtpSend::SmtpSend(const CheckedMail& mail, const MailProperties& properties, const std::string& message,
                   const MailServerRules& rules, MailEvents& events)
    : mail_(mail),
      properties_(properties),
      message_(message),
      rules_(rules),
      events_(events),
      talk_(properties.Username, message.size()),
      handle_(curl_.easy_init()),
      transfers_(curl_.multi_init())
{
    if (handle_ == nullptr || transfers_ == nullptr) throw std::bad_alloc();
    set_up();
    set_up_login();
}

SmtpSend::~SmtpSend()
{
    // libcurl says good-bye before it closes a connection, and would wait for the answer of a server that is silent.
    for (const curl_socket_t open : sockets_) ::shutdown(open, SHUT_RDWR);
    curl_.multi_remove_handle(transfers_, handle_);
    curl_.easy_cleanup(handle_);
    curl_.multi_cleanup(transfers_);
    curl_.slist_free_all(recipients_);
}

template <class Value>
void SmtpSend::set(CURLoption option, Value value)
{
    curl_.easy_setopt(handle_, option, value);
}

void SmtpSend::set_up()
{
    for (const std::string& address : mail_.envelope()) {
        recipients_ = curl_.slist_append(recipients_, address.c_str());
    }
    const long timeout = static_cast<long>(rules_.timeout.count());
    set(CURLOPT_URL, mail_.server.url().c_str());
    set(CURLOPT_PROXY, "");  // whatever the environment says: a login must know whom it meets
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_FORBID_REUSE, 1L);
    set(CURLOPT_QUICK_EXIT, 1L);  // a cancel does not wait for the name of the server
    set(CURLOPT_CONNECTTIMEOUT, timeout * kAnswersOfGreeting);
    set(CURLOPT_SERVER_RESPONSE_TIMEOUT, timeout);
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    if (!rules_.certificate_authority.empty()) set(CURLOPT_CAINFO, rules_.certificate_authority.c_str());
    set(CURLOPT_MAIL_FROM, mail_.from.address.c_str());
    set(CURLOPT_MAIL_RCPT, recipients_);
    set(CURLOPT_MAIL_RCPT_ALLLOWFAILS, 1L);
    set(CURLOPT_UPLOAD, 1L);
    set(CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(message_.size()));
    set(CURLOPT_READFUNCTION, &SmtpSend::on_read);
    set(CURLOPT_READDATA, this);
    set(CURLOPT_OPENSOCKETFUNCTION, &SmtpSend::on_open_socket);
    set(CURLOPT_OPENSOCKETDATA, this);
    set(CURLOPT_CLOSESOCKETFUNCTION, &SmtpSend::on_close_socket);
    set(CURLOPT_CLOSESOCKETDATA, this);
    set(CURLOPT_DEBUGFUNCTION, &SmtpSend::on_debug);
    set(CURLOPT_DEBUGDATA, this);
    set(CURLOPT_VERBOSE, 1L);
    set(CURLOPT_ERRORBUFFER, error_);
}

/// With a login nothing is said in the open, but on this machine; see `on_open_socket`.
void SmtpSend::set_up_login()
{
    set(CURLOPT_USE_SSL, static_cast<long>(properties_.UseAuthentication ? CURLUSESSL_ALL : CURLUSESSL_TRY));
    if (!properties_.UseAuthentication) return;
    set(CURLOPT_USERNAME, properties_.Username.c_str());
    set(CURLOPT_PASSWORD, properties_.Password.c_str());
}

curl_socket_t SmtpSend::on_open_socket(void* self, curlsocktype, curl_sockaddr* address) noexcept
try {
    auto& send = *static_cast<SmtpSend*>(self);
    send.met_remote_address_ = send.met_remote_address_ || !is_loopback(*address);
    const bool must_be_secure = send.properties_.UseAuthentication && send.met_remote_address_;
    send.set(CURLOPT_USE_SSL, static_cast<long>(must_be_secure ? CURLUSESSL_ALL : CURLUSESSL_TRY));
    const int opened = ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
    if (opened >= 0) send.sockets_.insert(opened);
    return opened;
} catch (const std::bad_alloc&) {
    return CURL_SOCKET_BAD;
}

int SmtpSend::on_close_socket(void* self, curl_socket_t open) noexcept
{
    static_cast<SmtpSend*>(self)->sockets_.erase(open);
    return ::close(open);
}

size_t SmtpSend::on_read(char* into, size_t size, size_t count, void* self) noexcept
{
    try {
        return static_cast<SmtpSend*>(self)->give(into, size * count);
    } catch (...) {
        return CURL_READFUNC_ABORT;
    }
}

/// The next bytes. They are asked for when all before have left, so that the percents are of those.
size_t SmtpSend::give(char* into, size_t room)
{
    const size_t whole = message_.size();
    note_percent(given_);
    const size_t part = std::min({room, whole - given_, std::max(kSmallestPart, whole / kAll + 1)});
    message_.copy(into, part, given_);
    given_ += part;
    return part;
}

void SmtpSend::note_percent(size_t bytes_out)
{
    const auto percent = static_cast<int32_t>(bytes_out * kAll / message_.size());
    if (percent != std::exchange(percent_, percent)) pending_.push_back({percent, {}});
}

int SmtpSend::on_debug(CURL*, curl_infotype sort, char* bytes, size_t size, void* self) noexcept
{
    try {
        static_cast<SmtpSend*>(self)->follow(sort, {bytes, size});
    } catch (...) {  // without memory a line of the list is left out
    }
    return 0;
}

void SmtpSend::follow(curl_infotype sort, std::string_view line)
{
    if (sort != CURLINFO_TEXT) latest_sign_ = std::chrono::steady_clock::now();
    if (sort == CURLINFO_HEADER_IN && !talk_.is_over()) {
        if (given_ == message_.size()) note_percent(given_);  // it answers to the whole
        talk_.heard(line);
    }
    if (sort == CURLINFO_HEADER_OUT) talk_.said(line);
    for (std::string& told : talk_.take_lines()) pending_.push_back({-1, std::move(told)});
    // libcurl waits for the answer to a good-bye without asking anyone; the mail is through by then.
    if (talk_.is_over()) set(CURLOPT_SERVER_RESPONSE_TIMEOUT, 1L);
}

void SmtpSend::tell_events()
{
    for (const Event& event : std::exchange(pending_, {})) {
        if (event.percent >= 0) {
            events_.Progress(event.percent);
        } else {
            events_.Status(event.line);
        }
    }
}

void SmtpSend::run()
{
    events_.Status("Connecting to " + mail_.server.place());
    const auto end = transfer();
    if (end) finish(*end);
}

std::optional<CURLcode> SmtpSend::transfer()
{
    curl_.multi_add_handle(transfers_, handle_);
    for (int running = 1; running > 0;) {
        const CURLMcode failed = curl_.multi_perform(transfers_, &running);
        tell_events();
        if (events_.is_cancelled()) return std::nullopt;
        if (failed != CURLM_OK) return CURLE_FAILED_INIT;
        if (running == 0) break;
        if (is_silent_too_long()) return CURLE_OPERATION_TIMEDOUT;
        curl_.multi_poll(transfers_, nullptr, 0, kPollMilliseconds, nullptr);
    }
    int left = 0;
    const CURLMsg* message = curl_.multi_info_read(transfers_, &left);
    return message != nullptr && message->msg == CURLMSG_DONE ? message->data.result : CURLE_FAILED_INIT;
}

bool SmtpSend::is_silent_too_long() const
{
    return std::chrono::steady_clock::now() - latest_sign_ > rules_.timeout;
}

void SmtpSend::finish(CURLcode code)
{
    if (code == CURLE_OK && talk_.refused_recipients().empty()) return events_.SendSuccesful();
    events_.SendFailed(reason(code));
}

std::string SmtpSend::reason(CURLcode code) const
{
    std::string text;
    for (const auto& refusal : talk_.refused_recipients()) text += (text.empty() ? "" : "\r\n") + with_answer(refusal);
    if (code == CURLE_OK) return text + "\r\nThe mail went to the other recipients.";
    const bool only_recipients = code == CURLE_SEND_ERROR && given_ == 0 && talk_.refusal().what.empty();
    if (!text.empty() && only_recipients) return text;
    return text + (text.empty() ? "" : "\r\n") + reason_by_code(code);
}

std::string SmtpSend::reason_by_code(CURLcode code) const
{
    const std::string where = mail_.server.place();
    const std::string detail = error_[0] != '\0' ? readable(error_) : curl_.easy_strerror(code);
    switch (code) {
        case CURLE_USE_SSL_FAILED:
            return "The server " + where +
                   " does not secure the connection (STARTTLS), and a user name is never sent without that.";
        case CURLE_OPERATION_TIMEDOUT:
            return fmt::format("The server {} did not answer within {} seconds.", where, rules_.timeout.count());
        case CURLE_COULDNT_RESOLVE_HOST:
            return "There is no server \"" + mail_.server.host + "\": " + detail + ".";
        case CURLE_COULDNT_CONNECT:
            return "The server " + where + " cannot be reached: " + detail + ".";
        case CURLE_PEER_FAILED_VERIFICATION:
            return "The certificate of the server " + where + " is not trusted: " + detail +
                   ". A private authority is named in velora.ini, section [Mail], key CertificateAuthority.";
        case CURLE_SSL_CACERT_BADFILE:
            return "The certificates in \"" + rules_.certificate_authority +
                   "\" cannot be read. The file is named in velora.ini, section [Mail], key CertificateAuthority.";
        default:
            break;
    }
    if (!talk_.refusal().what.empty()) return with_answer(talk_.refusal());
    std::string text = "The connection to " + where + " broke: " + detail + ".";
    if (given_ == message_.size()) text += " Whether the server has taken the message is not known.";
    return text;
}

}  // namespace velora::smtp
