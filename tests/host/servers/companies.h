#pragma once

#include "host/program.h"
#include "support/database_server.h"

namespace velora::testing {

/// The program on a company of a folder and on the same company on servers.
class ServersTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        if (!test::running_servers().empty()) return;
        std::cout << "NO DATABASE SERVER IS INSTALLED\n";
        GTEST_SKIP() << "no database server is installed";
    }

    /// Puts the rows of a folder on a server and answers with a folder whose velora.ini names it.
    [[nodiscard]] fs::path moved(const fs::path& company, test::DatabaseServer& server) const
    {
        const auto target = scratch(server.name());
        fs::copy(company, target, fs::copy_options::recursive);
        for (const char* database : {"velora", "accounting"}) server.make_database(database);
        const Ran made =
            run({"--folder", company.string(), "--quiet", "transfer", "--database",
                 "odbc:" + server.connection("velora"), "--accounting", "odbc:" + server.connection("accounting")});
        EXPECT_EQ(made.status, 0) << made.err;
        write_config(target, server.engine(), "odbc:" + server.connection("velora"),
                     "odbc:" + server.connection("accounting"));
        for (const char* file : {"velora.db", "accounting.db"}) fs::remove(target / file);
        return target;
    }

    static void write_config(const fs::path& folder, const std::string& engine, const std::string& database,
                             const std::string& accounting)
    {
        write_text(folder / "velora.ini", "[Host]\nCompany = DEMOCO\nDatabase = " + database + "\nAccounting = " +
                                              accounting + "\nEngine = " + engine + "\nUser = CHIEF\n");
    }
};

}  // namespace velora::testing
