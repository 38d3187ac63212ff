#include "engine/fill/file_properties.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <optional>
#include <sstream>
#include <string_view>

#include "engine/definition/file_beside.h"
#include "values/text.h"
#include "values/utf8.h"

namespace velora::engine {
namespace {

constexpr std::string_view kPdf = "net.sf.jasperreports.export.pdf.";

struct Permission {
    std::string_view name;
    bool Protection::*flag;
};
constexpr auto kPermissions = std::to_array<Permission>({
    {"PRINTING", &Protection::print_finely},
    {"DEGRADED_PRINTING", &Protection::print},
    {"COPY", &Protection::copy},
    {"ASSEMBLY", &Protection::assemble},
    {"FILL_IN", &Protection::fill_in},
    {"MODIFY_ANNOTATIONS", &Protection::annotate},
    {"MODIFY_CONTENTS", &Protection::modify},
    {"SCREENREADERS", &Protection::read_out},
});

class FileProperties {
public:
    FileProperties(const ReportPlan& plan, const FileSurroundings& around) : plan_(plan), around_(around) {}

    [[nodiscard]] std::optional<std::string> text(std::string_view name) const;
    [[nodiscard]] std::optional<std::string> pdf(std::string_view name) const
    {
        return text(std::string(kPdf) += name);
    }
    [[nodiscard]] bool pdf_flag(std::string_view name) const { return pdf(name) == "true"; }

    [[nodiscard]] std::shared_ptr<const Protection> protection() const;
    [[nodiscard]] std::shared_ptr<const std::vector<Attachment>> attachments() const;

private:
    void set(Protection& protection, std::string_view list, bool allowed) const;
    [[nodiscard]] std::optional<Attachment> attachment(const std::string& name) const;
    void warn(const std::string& text) const
    {
        if (around_.warn) around_.warn(text);
    }

    const ReportPlan& plan_;
    const FileSurroundings& around_;
};

std::optional<std::string> FileProperties::text(std::string_view name) const
{
    if (const auto found = plan_.properties.find(name); found != plan_.properties.end()) {
        return found->second.text(around_.environment);
    }
    const auto value = model::property_value(plan_.definition->data.properties, name);
    return value ? std::optional<std::string>(*value) : std::nullopt;
}

template <class Use>
void each_of(std::string_view list, const Use& use)
{
    while (!list.empty()) {
        const size_t bar = list.find('|');
        const std::string_view word = trimmed(list.substr(0, bar));
        if (!word.empty()) use(word);
        list = bar == std::string_view::npos ? std::string_view() : list.substr(bar + 1);
    }
}

void FileProperties::set(Protection& protection, std::string_view list, bool allowed) const
{
    each_of(list, [&](std::string_view word) {
        bool known = word == "ALL";
        for (const Permission& permission : kPermissions) {
            if (word != "ALL" && word != permission.name) continue;
            protection.*permission.flag = allowed;
            known = true;
        }
        if (!known) {
            std::string names;
            for (const Permission& permission : kPermissions) names.append(", ").append(permission.name);
            warn("the permission '" + std::string(cut_to_bytes(word, 100)) + "' is none of ALL" + names);
        }
    });
}

/// Nothing is allowed but reading aloud, unless it is said; a list of what is forbidden alone allows the rest.
std::shared_ptr<const Protection> FileProperties::protection() const
{
    const auto user = pdf("user.password"), owner = pdf("owner.password");
    if (!pdf_flag("encrypted")) {
        if (user || owner)
            warn("the file has a password, but the property '" + std::string(kPdf) +
                 "encrypted' is not true: it is not locked");
        return nullptr;
    }
    auto protection = std::make_shared<Protection>();
    protection->user_password = user.value_or("");
    protection->owner_password = owner.value_or("");
    const auto allowed = pdf("permissions.allowed"), denied = pdf("permissions.denied");
    if (allowed || denied) set(*protection, allowed.value_or("ALL"), true);
    if (denied) set(*protection, *denied, false);
    protection->print |= protection->print_finely;
    if (const auto level = text("net.sf.jasperreports.export.pdfa.conformance"); level && *level != "none") {
        warn("an encrypted file cannot be kept in archives: it does not say that it keeps the rules of PDF/A");
    }
    if (!protection->user_password.empty() && protection->user_password == protection->owner_password) {
        warn("the passwords of user and owner are the same: whoever opens the file may do everything with it");
    }
    return protection;
}

std::optional<Attachment> FileProperties::attachment(const std::string& name) const
{
    namespace fs = std::filesystem;
    constexpr uintmax_t kLargest = 64U << 20;
    const std::string shown(cut_to_bytes(name, 200));
    const auto file = file_beside(around_.folder, name);
    if (!file) {
        warn("the attachment '" + shown + "' is outside the definition's folder and is left out");
        return std::nullopt;
    }
    std::error_code error;
    if (!fs::is_regular_file(*file, error) || fs::file_size(*file, error) > kLargest) {
        warn("the attachment '" + shown + "' is not there or larger than 64 MB and is left out");
        return std::nullopt;
    }
    std::ifstream stream(*file, std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return Attachment{fs::path(name).filename().string(), std::move(bytes).str()};
}

std::shared_ptr<const std::vector<Attachment>> FileProperties::attachments() const
{
    constexpr size_t kMost = 20;
    const auto list = text("velora.attachments");
    if (!list) return nullptr;
    auto found = std::make_shared<std::vector<Attachment>>();
    size_t count = 0;
    each_of(*list, [&](std::string_view name) {
        if (++count > kMost) return;
        if (auto file = attachment(std::string(name))) found->push_back(std::move(*file));
    });
    if (count > kMost)
        warn("only 20 files go along as attachments, " + std::to_string(count - kMost) + " are left out");
    return found->empty() ? nullptr : std::move(found);
}

}  // namespace

void read_file_properties(Document& document, const ReportPlan& plan, const FileSurroundings& around)
{
    const FileProperties properties(plan, around);
    struct Entry {
        std::string_view name;
        std::string Document::*text;
    };
    for (const Entry& entry :
         {Entry{"metadata.title", &Document::title}, Entry{"metadata.author", &Document::author},
          Entry{"metadata.subject", &Document::subject}, Entry{"metadata.keywords", &Document::keywords},
          Entry{"tag.language", &Document::language}}) {
        if (auto text = properties.pdf(entry.name)) document.*entry.text = std::move(*text);
    }
    document.tagged = properties.pdf_flag("tagged");
    document.protection = properties.protection();
    document.attachments = properties.attachments();
}

}  // namespace velora::engine
