#pragma once

#include <sys/types.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace velora::test {

/// A database server of the test's own: on a throw-away folder and a free port of the loopback, as a user that is not
/// root, gone with the object. Its databases are empty and its one user needs no password.
class DatabaseServer {
public:
    DatabaseServer(const DatabaseServer&) = delete;
    DatabaseServer& operator=(const DatabaseServer&) = delete;
    virtual ~DatabaseServer();

    virtual void start() = 0;  ///< answers when the server does. @throws std::runtime_error with its log
    void stop();               ///< at once, as in a crash
    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] virtual std::string engine() const = 0;  ///< the dialect that it speaks, as velora.ini writes it
    /// For the driver manager.
    [[nodiscard]] virtual std::string connection(const std::string& database) const = 0;
    /// Makes an empty database; one of that name goes.
    void make_database(const std::string& database);
    [[nodiscard]] int port() const { return port_; }

protected:
    DatabaseServer(std::string name, int stop_signal);
    [[nodiscard]] std::filesystem::path folder() const { return folder_; }
    void run(const std::vector<std::string>& command) const;  ///< to its end
    void launch(const std::vector<std::string>& command);
    void wait_until_it_answers(const std::string& database) const;
    [[nodiscard]] virtual std::string first_database() const = 0;

private:
    [[nodiscard]] pid_t spawn(const std::vector<std::string>& command) const;
    [[nodiscard]] std::string log() const;

    std::string name_;
    int stop_signal_;
    std::filesystem::path folder_;
    int port_;
    pid_t process_ = 0;
};

/// Where a server, or the driver for it, is not installed, none.
std::unique_ptr<DatabaseServer> mariadb_server();
std::unique_ptr<DatabaseServer> postgresql_server();

/// The servers that are installed here, started once for the test program.
const std::vector<std::unique_ptr<DatabaseServer>>& running_servers();

}  // namespace velora::test
