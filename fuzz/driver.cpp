#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

/// Runs a fuzz target without libFuzzer: every file of a corpus (every line of a .lines file) as it is, then mutations
/// of them for a number of rounds, or of seconds. The same corpus, rounds and seed give the same inputs. An input that
/// ends the program is left in the file that --keep names.
///
///     fuzz_TARGET CORPUS... [--rounds N | --seconds N] [--seed N] [--keep FILE]

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

constexpr size_t kLongest = 1U << 20;

/// The input that runs, for the handler that has no other way to it.
const std::string* running = nullptr;
const char* keep_in = nullptr;

extern "C" void keep_input(int)
{
    if (keep_in != nullptr && running != nullptr) {
        const int file = ::open(keep_in, O_WRONLY | O_CREAT | O_TRUNC, 0666);
        if (file >= 0) {
            [[maybe_unused]] const auto written = ::write(file, running->data(), running->size());
            ::close(file);
        }
    }
    std::signal(SIGABRT, SIG_DFL);
    std::abort();
}

void run(const std::string& input)
{
    running = &input;
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(input.data()), input.size());
}

std::string contents_of(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void add_files(const std::filesystem::path& from, std::vector<std::string>& corpus)
{
    if (!std::filesystem::is_directory(from)) {
        std::istringstream lines(contents_of(from));
        if (from.extension() != ".lines") corpus.push_back(lines.str());
        for (std::string line; from.extension() == ".lines" && std::getline(lines, line);) corpus.push_back(line);
        return;
    }
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(from)) {
        if (entry.is_regular_file()) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());  // a folder has no order of its own
    for (const auto& file : files) add_files(file, corpus);
}

class Mutator {
public:
    Mutator(const std::vector<std::string>& corpus, uint64_t seed) : corpus_(corpus), random_(seed) {}

    std::string next()
    {
        std::string text = pick();
        const size_t changes = 1 + below(6);
        for (size_t at = 0; at < changes && text.size() < kLongest; ++at) change(text);
        return text;
    }

private:
    size_t below(size_t limit) { return limit == 0 ? 0 : random_() % limit; }
    const std::string& pick() { return corpus_[below(corpus_.size())]; }

    void change(std::string& text)
    {
        const size_t at = below(text.size() + 1);
        const size_t length = below(std::min<size_t>(text.size() - at, 64) + 1);
        switch (below(6)) {
            case 0:
                text.erase(at, length);
                break;
            case 1:
                text.insert(at, text.substr(at, length));
                break;
            case 2:
                if (at < text.size()) text[at] = static_cast<char>(below(256));
                break;
            case 3: {
                const std::string& other = pick();
                text.insert(at, other.substr(below(other.size() + 1), below(64)));
                break;
            }
            case 4:
                repeat(text, at, length);
                break;
            default:
                text.insert(at, std::string(kPieces[below(std::size(kPieces))]));
        }
    }

    /// Nesting and long chains come from the same part many times.
    void repeat(std::string& text, size_t at, size_t length)
    {
        const std::string part = text.substr(at, length);
        const size_t times = below(300);
        for (size_t round = 0; round < times && text.size() < kLongest; ++round) text.insert(at, part);
    }

    static constexpr std::string_view kPieces[] = {"0",    "-1",   "1e308",     "99999999999999999999",
                                                   "\"",   "'",    "<",         ">",
                                                   "/>",   "(",    ")",         "{",
                                                   "}",    "$F{",  ".",         ",",
                                                   "?",    ":",    "!",         "\xF0\x9F\x98\x80",
                                                   "\xFF", "null", "<![CDATA[", "]]>",
                                                   "&#0;", "%"};

    const std::vector<std::string>& corpus_;
    std::mt19937_64 random_;
};

uint64_t number(std::string_view text)
{
    uint64_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

/// What the command line asks for.
struct Order {
    std::vector<std::string> corpus;
    uint64_t rounds = 1000;
    std::chrono::seconds seconds{0};
    uint64_t seed = 1;
};

Order read_order(int count, char** arguments)
{
    Order order;
    for (int at = 1; at < count; ++at) {
        const std::string_view argument = arguments[at];
        const bool has_value = at + 1 < count;
        if (argument == "--rounds" && has_value) {
            order.rounds = number(arguments[++at]);
        } else if (argument == "--seconds" && has_value) {
            order.seconds = std::chrono::seconds(number(arguments[++at]));
        } else if (argument == "--seed" && has_value) {
            order.seed = number(arguments[++at]);
        } else if (argument == "--keep" && has_value) {
            keep_in = arguments[++at];
        } else {
            add_files(argument, order.corpus);
        }
    }
    if (order.corpus.empty()) order.corpus.emplace_back();
    return order;
}

}  // namespace

int main(int count, char** arguments)
{
    const Order order = read_order(count, arguments);
    std::signal(SIGABRT, keep_input);
    for (const auto& input : order.corpus) run(input);
    Mutator mutator(order.corpus, order.seed);
    const auto end = std::chrono::steady_clock::now() + order.seconds;
    const bool timed = order.seconds.count() > 0;
    uint64_t rounds = 0;
    for (; timed ? std::chrono::steady_clock::now() < end : rounds < order.rounds; ++rounds) run(mutator.next());
    std::printf("%zu files and %llu mutations\n", order.corpus.size(), static_cast<unsigned long long>(rounds));
    return 0;
}
