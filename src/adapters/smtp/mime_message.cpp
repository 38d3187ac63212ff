#include "adapters/smtp/mime_message.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#include "adapters/smtp/header_text.h"
#include "values/text.h"

namespace velora::smtp {
namespace {

namespace fs = std::filesystem;

/// Neither of the two encodings ever has "=_", so that no part can hold this.
constexpr std::string_view kBoundary = "=_velora_part";
constexpr uintmax_t kMostBytes = 100'000'000;
constexpr std::string_view kTooLarge = "The attachments are larger than 100 MB together.";

struct MediaType {
    std::string_view ending;
    std::string_view type;
};
constexpr auto kMediaTypes = std::to_array<MediaType>({
    {".pdf", "application/pdf"},
    {".htm", "text/html"},
    {".html", "text/html"},
    {".xls", "application/vnd.ms-excel"},
    {".doc", "application/msword"},
    {".rtf", "application/rtf"},
    {".txt", "text/plain"},
    {".xml", "application/xml"},
    {".csv", "text/csv"},
    {".json", "application/json"},
    {".png", "image/png"},
    {".jpg", "image/jpeg"},
    {".jpeg", "image/jpeg"},
    {".gif", "image/gif"},
    {".tif", "image/tiff"},
    {".tiff", "image/tiff"},
    {".svg", "image/svg+xml"},
    {".zip", "application/zip"},
    {".eml", "application/octet-stream"},
    {".docx", "application/vnd.openxmlformats-officedocument.wordprocessingml.document"},
    {".xlsx", "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet"},
    {".odt", "application/vnd.oasis.opendocument.text"},
    {".ods", "application/vnd.oasis.opendocument.spreadsheet"},
});

struct Attachment {
    std::string name;
    std::string bytes;
};

/// Reads the attachments, or says why not of all that cannot be read.
class AttachmentReader {
public:
    std::vector<Attachment> read(const std::vector<std::string>& paths)
    {
        std::vector<Attachment> read;
        for (const std::string& path : paths) read.push_back({fs::path(path).filename().string(), bytes_of(path)});
        if (!reasons_.empty()) throw MailRefused(reasons_);
        return read;
    }

private:
    std::string bytes_of(const std::string& path)
    {
        std::error_code failed;
        const auto status = fs::status(path, failed);
        if (failed) return refuse(path, failed.message());
        if (!fs::is_regular_file(status)) return refuse(path, "It is no file");
        total_ += fs::file_size(path, failed);
        if (failed) return refuse(path, failed.message());
        if (total_ > kMostBytes) throw MailRefused(std::string(kTooLarge));
        errno = 0;
        std::ifstream file(path, std::ios::binary);
        std::string bytes{std::istreambuf_iterator<char>(file), {}};
        if (!file.is_open() || file.bad()) return refuse(path, std::strerror(errno));
        return bytes;
    }

    std::string refuse(const std::string& path, const std::string& reason)
    {
        reasons_ +=
            (reasons_.empty() ? "" : "\r\n") + ("The attachment \"" + path + "\" cannot be read: ") + reason + ".";
        return {};
    }

    std::string reasons_;
    uintmax_t total_ = 0;
};

std::string domain_of(const std::string& address)
{
    return address.substr(address.rfind('@') + 1);
}

std::string_view importance(int32_t priority)
{
    constexpr int32_t kNormal = 3;
    if (priority == kNormal) return "normal";
    return priority < kNormal ? "high" : "low";
}

std::string headers(const MailProperties& mail, const CheckedMail& checked, const Stamp& stamp)
{
    std::string text = "Date: " + stamp.date + "\r\n";
    text += mailbox_field("From", {checked.from});
    if (!checked.reply_to.empty()) text += mailbox_field("Reply-To", {{"", checked.reply_to}});
    text += mailbox_field("To", checked.to);
    text += mailbox_field("Cc", checked.cc);
    if (!mail.Subject.empty()) text += text_field("Subject", mail.Subject);
    text += "Message-ID: <" + stamp.message_id + "@" + domain_of(checked.from.address) + ">\r\n";
    text += "X-Priority: " + std::to_string(mail.Priority) + "\r\n";
    text += "Importance: " + std::string(importance(mail.Priority)) + "\r\n";
    if (mail.Receipt) text += mailbox_field("Disposition-Notification-To", {checked.from});
    return text + "MIME-Version: 1.0\r\n";
}

std::string text_part(const std::string& message)
{
    return "Content-Type: text/plain; charset=utf-8\r\nContent-Transfer-Encoding: quoted-printable\r\n\r\n" +
           quoted_printable(message);
}

std::string attachment_part(const Attachment& attachment)
{
    const std::string type = media_type(attachment.name);
    const bool has_charset = type.starts_with("text/") && is_utf8(attachment.bytes);
    return "Content-Type: " + type + (has_charset ? "; charset=utf-8" : "") +
           "\r\nContent-Transfer-Encoding: base64\r\nContent-Disposition: attachment" +
           parameter("filename", attachment.name) + "\r\n\r\n" + base64_lines(attachment.bytes);
}

}  // namespace

std::string mime_message(const MailProperties& mail, const CheckedMail& checked, const Stamp& stamp)
{
    const auto attachments = AttachmentReader().read(checked.attachments);
    std::string text = headers(mail, checked, stamp);
    if (attachments.empty()) return text + text_part(mail.Message);

    const std::string mark = "\r\n--" + std::string(kBoundary);
    text += "Content-Type: multipart/mixed; boundary=\"" + std::string(kBoundary) + "\"\r\n";
    text += mark + "\r\n" + text_part(mail.Message);
    for (const Attachment& attachment : attachments) text += mark + "\r\n" + attachment_part(attachment);
    return text + mark + "--\r\n";
}

std::string media_type(const std::string& file_name)
{
    const std::string ending = fs::path(file_name).extension().string();
    for (const auto& known : kMediaTypes) {
        if (same_name(known.ending, ending)) return std::string(known.type);
    }
    return "application/octet-stream";
}

}  // namespace velora::smtp
