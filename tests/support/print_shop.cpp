#include "support/print_shop.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <thread>

namespace velora::test {
namespace {

namespace fs = std::filesystem;

std::string content_of_file(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

PrintShop::PrintShop()
{
    std::istringstream line(process_.line());
    std::string state, server, bus;
    line >> state;
    is_open_ = state == "ready";
    if (!is_open_) {
        if (state == "none") std::getline(line, missing_);
        return;
    }
    line >> server >> bus >> spool_ >> log_;
    ::setenv("CUPS_SERVER", server.c_str(), 1);
    if (bus != "-") ::setenv("DBUS_SYSTEM_BUS_ADDRESS", bus.c_str(), 1);
}

PrintShop::~PrintShop()
{
    ::unsetenv("CUPS_SERVER");
    ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

std::string PrintShop::arrived(const std::string& name, size_t size) const
{
    constexpr int kRounds = 600;
    for (int round = 0; round < kRounds; ++round) {
        for (const auto& entry : fs::directory_iterator(spool_)) {
            const std::string file = entry.path().filename().string();
            if (file.find(name) == std::string::npos) continue;
            std::string bytes = content_of_file(entry.path());
            if (bytes.size() >= size) return bytes;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return {};
}

size_t PrintShop::count() const
{
    return static_cast<size_t>(std::distance(fs::directory_iterator(spool_), fs::directory_iterator()));
}

std::vector<std::string> PrintShop::told(const std::string& name) const
{
    const std::string begin = "    " + name + " ";
    std::vector<std::string> found;
    std::istringstream log(content_of_file(log_));
    for (std::string line; std::getline(log, line);) {
        if (line.starts_with(begin)) found.push_back(line.substr(begin.size()));
    }
    return found;
}

}  // namespace velora::test
