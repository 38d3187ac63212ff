#include "support/database_server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <grp.h>
#include <netinet/in.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

#include "adapters/odbc/connection.h"
#include "values/fault.h"

namespace velora::test {

namespace {

namespace fs = std::filesystem;

/// Servers refuse to run as root; a test that does hands the work to the user without rights.
constexpr const char* kUser = "nobody";

/// From below the ports that the system gives to outgoing connections, which could take one while its server is down;
/// each test program looks from another place on.
int free_port()
{
    constexpr int kFirst = 20'000, kCount = 12'000;
    static int next = ::getpid() * 37;
    for (int tries = 0; tries < kCount; ++tries) {
        const int port = kFirst + next++ % kCount;
        const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<uint16_t>(port));
        const bool is_free = ::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
        ::close(socket);
        if (is_free) return port;
    }
    throw std::runtime_error("no free port");
}

/// In memory where there is room: nothing of it has to last.
fs::path throw_away_place()
{
    constexpr uintmax_t kEnough = uintmax_t{1} << 30U;
    const fs::path memory = "/dev/shm";
    std::error_code none;
    const auto space = fs::space(memory, none);
    return !none && space.available > kEnough ? memory : fs::temp_directory_path();
}

fs::path new_folder(const std::string& name)
{
    auto pattern = (throw_away_place() / ("velora-" + name + "-XXXXXX")).string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder for " + name);
    if (const passwd* user = ::getpwnam(kUser); ::geteuid() == 0 && user != nullptr) {
        if (::chown(pattern.c_str(), user->pw_uid, user->pw_gid) != 0) throw std::runtime_error("chown " + pattern);
    }
    return pattern;
}

void drop_rights()
{
    if (::geteuid() != 0) return;
    const passwd* user = ::getpwnam(kUser);
    const bool is_dropped =
        user != nullptr && ::setgroups(0, nullptr) == 0 && ::setgid(user->pw_gid) == 0 && ::setuid(user->pw_uid) == 0;
    if (!is_dropped) ::_exit(126);
}

/// Whether the driver manager knows the driver.
bool has_driver(const std::string& name)
{
    std::ifstream known("/etc/odbcinst.ini");
    const std::string text{std::istreambuf_iterator<char>(known), {}};
    return text.find("[" + name + "]") != std::string::npos;
}

}  // namespace

DatabaseServer::DatabaseServer(std::string name, int stop_signal)
    : name_(std::move(name)), stop_signal_(stop_signal), folder_(new_folder(name_)), port_(free_port())
{
}

DatabaseServer::~DatabaseServer()
{
    stop();
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

std::string DatabaseServer::log() const
{
    std::ifstream file(folder_ / "log");
    return {std::istreambuf_iterator<char>(file), {}};
}

pid_t DatabaseServer::spawn(const std::vector<std::string>& command) const
{
    const auto log_file = (folder_ / "log").string();
    std::vector<char*> arguments;
    for (const auto& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    const pid_t child = ::fork();
    if (child != 0) return child;
    drop_rights();
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);  // a test that dies leaves no server behind
    const int log_handle = ::open(log_file.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
    ::dup2(log_handle, STDOUT_FILENO);
    ::dup2(log_handle, STDERR_FILENO);
    if (::chdir("/") == 0) ::execv(arguments.front(), arguments.data());
    ::_exit(127);
}

void DatabaseServer::run(const std::vector<std::string>& command) const
{
    int status = 0;
    ::waitpid(spawn(command), &status, 0);
    if (status != 0) throw std::runtime_error(command.front() + " failed:\n" + log());
}

void DatabaseServer::launch(const std::vector<std::string>& command)
{
    process_ = spawn(command);
}

void DatabaseServer::wait_until_it_answers(const std::string& database) const
{
    std::string reason;
    for (int tries = 0; tries < 1200; ++tries) {
        try {
            open_odbc(connection(database));
            return;
        } catch (const Fault& fault) {
            reason = fault.description();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    throw std::runtime_error(name_ + " does not answer: " + reason + "\n" + log());
}

void DatabaseServer::stop()
{
    if (process_ == 0) return;
    ::kill(process_, stop_signal_);
    ::waitpid(process_, nullptr, 0);
    process_ = 0;
}

void DatabaseServer::make_database(const std::string& database)
{
    const auto server = open_odbc(connection(first_database()));
    server->Execute("DROP DATABASE IF EXISTS " + database);
    server->Execute("CREATE DATABASE " + database);
}

namespace {

class MariaDb final : public DatabaseServer {
public:
    MariaDb() : DatabaseServer("MariaDB", SIGKILL)
    {
        run({"/usr/bin/mariadb-install-db", "--no-defaults", "--datadir=" + data(),
             "--auth-root-authentication-method=normal", "--skip-test-db", "--skip-name-resolve",
             "--innodb-log-file-size=8M"});
    }

    void start() override
    {
        launch({"/usr/sbin/mariadbd", "--no-defaults", "--datadir=" + data(), "--socket=" + data() + "/socket",
                "--port=" + std::to_string(port()), "--bind-address=127.0.0.1", "--skip-name-resolve",
                "--sql-mode=MSSQL,STRICT_TRANS_TABLES,NO_BACKSLASH_ESCAPES", "--innodb-flush-log-at-trx-commit=0",
                "--innodb-buffer-pool-size=32M", "--innodb-log-file-size=8M", "--performance-schema=off",
                "--character-set-server=utf8mb4"});
        wait_until_it_answers(first_database());
    }
    [[nodiscard]] std::string engine() const override { return "SQLServer"; }
    [[nodiscard]] std::string connection(const std::string& database) const override
    {
        return "Driver={MariaDB Unicode};Server=127.0.0.1;Port=" + std::to_string(port()) +
               ";UID=root;Database=" + database;
    }

private:
    [[nodiscard]] std::string data() const { return (folder() / "data").string(); }
    [[nodiscard]] std::string first_database() const override { return "mysql"; }
};

/// Its quick end is SIGQUIT, which takes its helpers along.
class PostgreSql final : public DatabaseServer {
public:
    explicit PostgreSql(fs::path programs) : DatabaseServer("PostgreSQL", SIGQUIT), programs_(std::move(programs))
    {
        run({programs_ / "initdb", "-D", data(), "-U", "velora", "-A", "trust", "-E", "UTF8", "--locale=C",
             "--no-sync"});
    }

    void start() override
    {
        launch({programs_ / "postgres", "-D", data(), "-p", std::to_string(port()), "-k", folder().string(), "-c",
                "listen_addresses=127.0.0.1", "-c", "fsync=off", "-c", "shared_buffers=16MB"});
        wait_until_it_answers(first_database());
    }
    [[nodiscard]] std::string engine() const override { return "Pervasive"; }
    [[nodiscard]] std::string connection(const std::string& database) const override
    {
        return "Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=" + std::to_string(port()) +
               ";UID=velora;Database=" + database;
    }

private:
    [[nodiscard]] std::string data() const { return (folder() / "data").string(); }
    [[nodiscard]] std::string first_database() const override { return "postgres"; }

    fs::path programs_;
};

}  // namespace

std::unique_ptr<DatabaseServer> mariadb_server()
{
    if (!fs::exists("/usr/sbin/mariadbd") || !has_driver("MariaDB Unicode")) return nullptr;
    return std::make_unique<MariaDb>();
}

std::unique_ptr<DatabaseServer> postgresql_server()
{
    const fs::path versions = "/usr/lib/postgresql";
    if (!fs::exists(versions) || !has_driver("PostgreSQL Unicode")) return nullptr;
    std::vector<fs::path> found;
    for (const auto& version : fs::directory_iterator(versions)) {
        if (fs::exists(version.path() / "bin" / "postgres")) found.push_back(version.path() / "bin");
    }
    return found.empty() ? nullptr : std::make_unique<PostgreSql>(*std::ranges::max_element(found));
}

const std::vector<std::unique_ptr<DatabaseServer>>& running_servers()
{
    static const auto servers = [] {
        std::vector<std::unique_ptr<DatabaseServer>> all;
        for (const auto make : {mariadb_server, postgresql_server}) {
            if (auto server = make()) all.push_back(std::move(server));
        }
        for (const auto& server : all) server->start();
        return all;
    }();
    return servers;
}

}  // namespace velora::test
