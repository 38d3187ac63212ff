#include <sqlite3.h>

#include <fstream>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "adapters/ini/stores.h"
#include "forms_script.h"
#include "host/drive_command.h"
#include "host/host.h"
#include "support/fake_mail.h"

namespace velora::testing {

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;
using Lines = std::vector<std::string>;

class HeldPrinters final : public Printers {
public:
    [[nodiscard]] std::vector<Printer> list() const override { return printers; }
    std::vector<Printer> printers;
};

Lines split(const std::string& text, char mark)
{
    Lines parts;
    std::istringstream in(text);
    for (std::string part; std::getline(in, part, mark);) parts.push_back(part);
    return parts;
}

std::string file_text(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Asks for a line whenever the reader wants one.
class PulledLines final : public std::streambuf {
public:
    explicit PulledLines(std::function<std::optional<std::string>()> next) : next_(std::move(next)) {}

protected:
    int_type underflow() override
    {
        const auto line = next_();
        if (!line) return traits_type::eof();
        line_ = *line + "\n";
        setg(line_.data(), line_.data(), line_.data() + line_.size());
        return traits_type::to_int_type(line_.front());
    }

private:
    std::function<std::optional<std::string>()> next_;
    std::string line_;
};

Fault no_writing()
{
    return Fault(fault::kPathAccess, "The file cannot be written: it is read-only");
}

/// Files that can be read and not be written.
class LockedProfiles final : public ProfileFile {
public:
    explicit LockedProfiles(ProfileFile& files) : files_(files) {}
    [[nodiscard]] bool exists(const std::string& path) const override { return files_.exists(path); }
    [[nodiscard]] std::string read(const std::string& path, std::string_view section,
                                   std::string_view key) const override
    {
        return files_.read(path, section, key);
    }
    void write(const std::string&, std::string_view, std::string_view, std::string_view) override
    {
        throw no_writing();
    }
    void delete_section(const std::string&, std::string_view) override { throw no_writing(); }

private:
    ProfileFile& files_;
};

class LockedSettings final : public SettingsStore {
public:
    explicit LockedSettings(SettingsStore& settings) : settings_(settings) {}
    [[nodiscard]] std::string get(std::string_view application, std::string_view section, std::string_view key,
                                  std::string_view otherwise) const override
    {
        return settings_.get(application, section, key, otherwise);
    }
    void set(std::string_view, std::string_view, std::string_view, std::string_view) override { throw no_writing(); }

private:
    SettingsStore& settings_;
};

class Player {
public:
    Player(const ScriptCase& script, const fs::path& company, fs::path folder, fs::path windows)
        : script_(script), folder_(std::move(folder)), windows_(std::move(windows)), answers_(script.steps.size())
    {
        fs::remove_all(folder_);
        fs::create_directories(folder_.parent_path());
        fs::copy(company, folder_, fs::copy_options::recursive);
        rename_company(company);
    }

    std::vector<Lines> play()
    {
        while (at_ < script_.steps.size() && script_.steps[at_].kind == '$') outside();
        const Surroundings around{out_, err_, [](const char*) { return std::string(); },
                                  fs::path(VELORA_SOURCE_DIR) / "velora-report", false};
        CommonOptions options;
        options.folder = folder_.string();
        options.settings = settings_file().string();
        options.today = DateTime::from_iso("2026-06-15");
        options.region = "en-US";
        Host host(options, around);
        state_ = &host.company();
        state_->ports.mail = &mail_;
        state_->ports.printers = &printers_;
        PulledLines lines([this] { return next(); });
        std::istream in(&lines);
        drive_forms(host, in, windows_);
        take_answer();
        return std::move(answers_);
    }

private:
    [[nodiscard]] fs::path settings_file() const { return folder_ / "settings.ini"; }

    /// The next command; what stands before it happens first.
    std::optional<std::string> next()
    {
        take_answer();
        while (at_ < script_.steps.size() && script_.steps[at_].kind == '$') outside();
        if (at_ == script_.steps.size()) return std::nullopt;
        const ScriptStep& step = script_.steps[at_];
        asked_ = at_++;
        if (step.kind == '>') return with_folder(step.text);
        return Json{{"state", form_of(step.text)}}.dump();
    }

    void take_answer()
    {
        std::string text = without_folder(out_.str());
        out_.str("");
        if (!asked_) return;
        if (!text.empty()) text.pop_back();
        const ScriptStep& step = script_.steps[*asked_];
        if (step.kind == '?') text = parts_of(text, step.text);
        answers_[*asked_].push_back(text);
        asked_.reset();
    }

    /// The first word; a viewer's number stands behind an underscore.
    static std::string form_of(const std::string& question)
    {
        return exchanged(question.substr(0, question.find(' ')), "_", " ");
    }

    static std::string parts_of(const std::string& answer, const std::string& question)
    {
        const Json state = Json::parse(answer).value("state", Json());
        std::string found;
        const Lines words = split(question, ' ');
        for (size_t at = 1; at < words.size(); ++at) {
            Json part = state.contains(words[at]) ? state : state.value("controls", Json::object());
            for (const std::string& key : split(words[at], '.')) {
                part = part.is_array() ? part.at(static_cast<size_t>(std::stoi(key))) : part.value(key, Json());
            }
            found += (at > 1 ? " " : "") + part.dump();
        }
        return found;
    }

    void outside()
    {
        const std::string text = with_folder(script_.steps[at_].text);
        const size_t end = std::min(text.find(' '), text.size());
        const std::string word = text.substr(0, end);
        const std::string rest = end < text.size() ? text.substr(end + 1) : "";
        static const std::map<std::string, void (Player::*)(const std::string&)> words{
            {"sql", &Player::change_database}, {"accounting", &Player::change_accounting},
            {"user", &Player::set_user},       {"settings", &Player::set_settings},
            {"list", &Player::write_list},     {"write", &Player::write_file},
            {"show", &Player::show},           {"printer", &Player::add_printer},
            {"mail", &Player::add_mail},       {"remove", &Player::remove_file},
            {"lock", &Player::lock_files},     {"empty", &Player::empty_file},
        };
        const auto found = words.find(word);
        if (found == words.end()) throw std::runtime_error("unknown: " + text);
        (this->*found->second)(rest);
        ++at_;
    }

    static void run_sql(const fs::path& file, const std::string& sql)
    {
        sqlite3* database = nullptr;
        char* error = nullptr;
        sqlite3_open(file.c_str(), &database);
        sqlite3_exec(database, sql.c_str(), nullptr, nullptr, &error);
        const std::string said = error != nullptr ? error : "";
        sqlite3_free(error);
        sqlite3_close(database);
        if (!said.empty()) throw std::runtime_error(sql + ": " + said);
    }

    void change_database(const std::string& sql) { run_sql(folder_ / "velora.db", sql); }
    void change_accounting(const std::string& sql) { run_sql(folder_ / "accounting.db", sql); }
    void set_user(const std::string& user)
    {
        std::string text = file_text(folder_ / "velora.ini");
        const size_t at = text.find("CHIEF");
        std::ofstream(folder_ / "velora.ini") << text.replace(at, 5, user);
    }
    /// KEY=VALUE
    void set_settings(const std::string& setting)
    {
        const size_t at = setting.find('=');
        ini_settings(settings_file().string())->set("", "DEMOCO_Report", setting.substr(0, at), setting.substr(at + 1));
    }
    /// NAME NUMBER|ENTRY|ENTRY…, an entry being NAME;LOCATION;TYPE
    void write_list(const std::string& text)
    {
        const fs::path file = folder_ / "Reports" / ("DEMOCO_" + text.substr(0, text.find(' ')) + "Reports.ini");
        const Lines rows = split(text.substr(text.find(' ') + 1), '|');
        std::ofstream out(file);
        out << "[Reports]\nNumber=" << rows.front() << "\n";
        for (size_t at = 1; at < rows.size(); ++at) {
            const Lines parts = split(rows[at], ';');
            out << "[Report #" << at << "]\nName=" << parts.at(0) << "\nLocation=" << parts.at(1)
                << "\nType=" << parts.at(2) << "\n";
        }
    }
    void write_file(const std::string& path)
    {
        fs::create_directories(fs::path(path).parent_path());
        std::ofstream(path) << "text";
    }
    void remove_file(const std::string& path) { fs::remove_all(path); }
    void empty_file(const std::string& path) { std::ofstream out(path, std::ios::trunc); }
    /// From now on list files and settings can only be read.
    void lock_files(const std::string&)
    {
        locked_profiles_.emplace(*state_->ports.profiles);
        locked_settings_.emplace(*state_->ports.settings);
        state_->ports.profiles = &*locked_profiles_;
        state_->ports.settings = &*locked_settings_;
    }
    /// "settings", "list NAME", "mail" or "pointer"
    void show(const std::string& what)
    {
        Lines& shown = answers_[at_];
        if (what == "mail") {
            for (const auto& mail : mail_.sent) {
                for (const auto& property : test::properties_of(mail))
                    shown.push_back(exchanged(property, "\n", "\\n"));
            }
            mail_.sent.clear();
            return;
        }
        const fs::path file =
            what == "settings" ? settings_file() : folder_ / "Reports" / ("DEMOCO_" + what.substr(5) + "Reports.ini");
        for (const auto& line : split(without_folder(file_text(file)), '\n')) {
            if (!line.empty()) shown.push_back(line);
        }
    }
    /// NAME;DRIVER;PORT
    void add_printer(const std::string& text)
    {
        const Lines parts = split(text, ';');
        printers_.printers.push_back({parts.at(1), parts.at(0), parts.at(2)});
    }
    /// What the next send is to tell: "progress N", "status TEXT", "sent", "failed TEXT", "fault TEXT"
    void add_mail(const std::string& text)
    {
        const std::string word = text.substr(0, text.find(' '));
        const std::string rest = text.size() > word.size() ? text.substr(word.size() + 1) : "";
        mail_.steps.emplace_back([word, rest](MailEvents& events) {
            if (word == "progress") events.Progress(std::stoi(rest));
            if (word == "status") events.Status(rest);
            if (word == "sent") events.SendSuccesful();
            if (word == "failed") events.SendFailed(rest);
            if (word == "fault") throw Fault(fault::kCannotCreate, rest);
        });
    }

    void rename_company(const fs::path& company) const
    {
        for (const auto& entry : fs::directory_iterator(folder_ / "Reports")) {
            if (entry.path().extension() != ".ini") continue;
            std::string text = file_text(entry.path());
            for (size_t at = 0; (at = text.find(company.string(), at)) != std::string::npos;) {
                text.replace(at, company.string().size(), folder_.string());
            }
            std::ofstream(entry.path()) << text;
        }
    }
    static std::string exchanged(std::string text, const std::string& from, const std::string& to)
    {
        for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
            text.replace(at, from.size(), to);
        }
        return text;
    }
    [[nodiscard]] std::string with_folder(const std::string& text) const
    {
        return exchanged(exchanged(text, "{folder}", folder_.string()), "{long}", long_name());
    }
    [[nodiscard]] std::string without_folder(const std::string& text) const
    {
        return exchanged(exchanged(text, folder_.string(), "{folder}"), long_name(), "{long}");
    }
    static std::string long_name() { return std::string(10'000, 'x'); }

    const ScriptCase& script_;
    fs::path folder_;
    fs::path windows_;
    std::vector<Lines> answers_;
    size_t at_ = 0;
    std::optional<size_t> asked_;
    std::ostringstream out_;
    std::ostringstream err_;
    SessionState* state_ = nullptr;
    test::FakeMail mail_;
    HeldPrinters printers_;
    std::optional<LockedProfiles> locked_profiles_;
    std::optional<LockedSettings> locked_settings_;
};

}  // namespace

std::vector<std::vector<std::string>> play(const ScriptCase& script, const fs::path& company, const fs::path& scratch,
                                           const fs::path& windows)
{
    return Player(script, company, scratch / "company", windows).play();
}

}  // namespace velora::testing
