#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <thread>

#include "support/small_disk.h"
#include "values/atomic_file.h"
#include "values/atomic_folder.h"
#include "values/confined_path.h"
#include "values/fault.h"
#include "values/ordinary_file.h"

namespace velora {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

class Files : public testing::Test {
protected:
    Files()
    {
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    ~Files() override { fs::remove_all(folder); }

    static void put(const fs::path& file, const std::string& text) { std::ofstream(file, std::ios::binary) << text; }
    static std::string text_of(const fs::path& file)
    {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    static std::vector<std::string> names_in(const fs::path& where)
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(where)) names.push_back(entry.path().filename());
        std::ranges::sort(names);
        return names;
    }
    static mode_t mode_of(const fs::path& file)
    {
        struct stat status {};
        EXPECT_EQ(::stat(file.c_str(), &status), 0) << file;
        return status.st_mode & 07777;
    }
    /// What the fault says; empty when all goes well.
    static std::string refusal(const std::function<void()>& action)
    {
        try {
            action();
        } catch (const Fault& caught) {
            EXPECT_EQ(caught.number(), fault::kPathAccess);
            return caught.description();
        }
        return {};
    }

    const fs::path folder = fs::path(VELORA_TEST_SCRATCH) / "files";
};

TEST_F(Files, OnlyOrdinaryFilesOfABoundedSizeAreRead)
{
    const auto answer = [](const fs::path& file) {
        try {
            return read_ordinary_file(file, 1 << 20);
        } catch (const std::runtime_error& caught) {
            return "refused: " + std::string(caught.what());
        }
    };
    const std::string most(1 << 20, '\0');
    put(folder / "most", most);
    put(folder / "more", most + "x");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_symlink("/dev/zero", folder / "endless");
    EXPECT_EQ(answer(folder / "most"), most);
    EXPECT_EQ(answer(folder / "more"), "refused: it has more than 1 MB");
    EXPECT_EQ(answer(folder / "pipe"), "refused: it is no ordinary file");
    EXPECT_EQ(answer(folder / "endless"), "refused: it is no ordinary file");
    EXPECT_EQ(answer(folder), "refused: Is a directory");
    EXPECT_EQ(answer(folder / "none"), "refused: No such file or directory");
}

TEST_F(Files, AFileIsThereAsAWholeOrNotAtAll)
{
    const fs::path target = folder / "made.txt";
    put(target, "earlier");
    {
        AtomicFile file(target);
        file.write("half");
        EXPECT_EQ(names_in(folder).size(), 2U) << "the part stands beside it";
    }
    EXPECT_EQ(text_of(target), "earlier");
    EXPECT_THAT(names_in(folder), ElementsAre("made.txt"));
    write_file(target, "whole");
    EXPECT_EQ(text_of(target), "whole");
    EXPECT_THAT(names_in(folder), ElementsAre("made.txt"));
}

TEST_F(Files, WhatCannotBeWrittenIsToldAndLeavesTheEarlierFile)
{
    const fs::path target = folder / "kept.txt";
    put(target, "earlier");
    {
        const test::SmallDisk disk(1 << 19);
        const std::string much(1 << 20, 'x');
        EXPECT_THAT(refusal([&] { write_file(target, much); }), HasSubstr("kept.txt: File too large"));
        EXPECT_EQ(refusal([&] { write_file(folder / "small.txt", much.substr(0, 1 << 19)); }), "");
    }
    EXPECT_EQ(text_of(target), "earlier");
    fs::create_directories(folder / "taken" / "inside");
    EXPECT_THAT(refusal([&] { write_file(folder / "taken", "x"); }), HasSubstr("taken: Is a directory"));
    EXPECT_THAT(refusal([&] { write_file(folder / "none" / "x", "x"); }), HasSubstr("No such file"));
    EXPECT_THAT(refusal([&] { write_file(folder / std::string(300, 'n'), "x"); }), HasSubstr("File name too long"));
    EXPECT_THAT(names_in(folder), ElementsAre("kept.txt", "small.txt", "taken"));
}

TEST_F(Files, TheLongestNamesAreWrittenAndCutBetweenCharactersMeanwhile)
{
    std::string name = "a";
    for (int at = 0; at < 127; ++at) name += "ü";
    AtomicFile file(folder / name);
    for (const auto& part : names_in(folder)) {
        EXPECT_LE(part.size(), 255U);
        EXPECT_EQ(part.find(".velora-") % 2, 1U) << part;
    }
    file.finish();
    EXPECT_THAT(names_in(folder), ElementsAre(name));
}

TEST_F(Files, WhatIsHeldOpenGoesOnWhereItStands)
{
    const fs::path target = folder / "stream.txt";
    const int stream = ::open(target.c_str(), O_RDWR | O_CREAT, 0600);
    ASSERT_EQ(::write(stream, "before ", 7), 7);
    for (const char* folder_of_streams : {"/dev/fd/", "/proc/self/fd/"}) {
        write_file(folder_of_streams + std::to_string(stream), "report ");
    }
    ASSERT_EQ(::write(stream, "after", 5), 5);
    ::close(stream);
    EXPECT_EQ(text_of(target), "before report report after");
}

TEST_F(Files, AnEarlierFileHandsOnItsPermissionsAndItsOwner)
{
    const fs::path target = folder / "private.txt";
    for (const mode_t mode : {0600, 0640, 0444, 0755}) {
        fs::remove(target);
        put(target, "earlier");
        ::chmod(target.c_str(), mode);
        const bool is_given = ::chown(target.c_str(), 1234, 2345) == 0;  // as the superuser
        AtomicFile file(target);
        for (const auto& name : names_in(folder)) EXPECT_EQ(mode_of(folder / name), mode) << name;
        file.finish();
        struct stat status {};
        ASSERT_EQ(::stat(target.c_str(), &status), 0);
        EXPECT_EQ(status.st_uid, is_given ? 1234 : ::getuid());
        EXPECT_EQ(status.st_gid, is_given ? 2345 : ::getgid());
        EXPECT_EQ(mode_of(target), mode);
    }
    const mode_t before = ::umask(027);
    write_file(folder / "new.txt", "x");
    AtomicFile(folder / "secret", {.permissions = 0600}).finish();
    ::umask(before);
    EXPECT_EQ(mode_of(folder / "new.txt"), 0640);
    EXPECT_EQ(mode_of(folder / "secret"), 0600);
}

TEST_F(Files, OfTwoThatMakeAFileTheFirstWinsWhereThatIsAsked)
{
    AtomicFile first(folder / "key", {.first_wins = true}), second(folder / "key", {.first_wins = true});
    first.write("first");
    second.write("second");
    second.finish();
    first.finish();
    EXPECT_EQ(text_of(folder / "key"), "second");
}

TEST_F(Files, LinksLeadToTheFileThatIsWritten)
{
    fs::create_directories(folder / "store");
    put(folder / "store" / "real.txt", "earlier");
    fs::create_symlink("store/real.txt", folder / "near");
    fs::create_symlink("near", folder / "far");
    fs::create_symlink("store/new.txt", folder / "dangling");
    fs::create_symlink("circle", folder / "circle");
    write_file(folder / "far", "written");
    write_file(folder / "dangling", "new");
    EXPECT_NE(refusal([&] { write_file(folder / "circle", "x"); }), "");
    EXPECT_EQ(text_of(folder / "store" / "real.txt"), "written");
    EXPECT_EQ(text_of(folder / "store" / "new.txt"), "new");
    for (const char* name : {"near", "far", "dangling", "circle"}) EXPECT_TRUE(fs::is_symlink(folder / name)) << name;
    EXPECT_EQ(names_in(folder).size(), 5U);
    EXPECT_THAT(names_in(folder / "store"), ElementsAre("new.txt", "real.txt"));
}

TEST_F(Files, PipesAndDevicesAreWrittenIntoAndStayWhatTheyAre)
{
    const fs::path pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::string read;
    std::thread reader([&] { read = text_of(pipe); });
    write_file(pipe, "through");
    reader.join();
    EXPECT_EQ(read, "through");
    EXPECT_TRUE(fs::is_fifo(pipe));
    fs::create_symlink("/dev/full", folder / "full");  // a name of our own: nothing happens to the machine's
    EXPECT_THAT(refusal([&] { write_file(folder / "full", "x"); }), HasSubstr("No space left on device"));
    EXPECT_TRUE(fs::is_symlink(folder / "full"));
    EXPECT_THAT(names_in(folder), ElementsAre("full", "pipe"));
}

TEST_F(Files, AStreamOfTheProgramIsAddedToAndItsFileNotReplaced)
{
    const fs::path target = folder / "stream.txt";
    const int stream = ::open(target.c_str(), O_RDWR | O_CREAT | O_APPEND, 0600);
    ASSERT_EQ(::write(stream, "head ", 5), 5);
    write_file("/dev/fd/" + std::to_string(stream), "body");
    ASSERT_EQ(::write(stream, " tail", 5), 5);
    ::close(stream);
    EXPECT_EQ(text_of(target), "head body tail");
    EXPECT_THAT(names_in(folder), ElementsAre("stream.txt"));
}

TEST_F(Files, PartsOfDeadProgramsAreSweptAndThoseInWorkStay)
{
    const fs::path swept = folder / "swept";  // a folder is swept once by each program
    fs::create_directory(swept);
    const std::string dead = "a.txt.velora-0123456789ABCDEF.part", alive = "b.txt.velora-0123456789ABCDEF.part";
    for (const auto& name :
         {dead, alive, std::string("machine.part"), std::string("x.velora-0123456789ABCDE.part"),
          std::string("x.velora-0123456789ABCDEF.party"), std::string("x.velora-0123456789ABCDEG.part")}) {
        put(swept / name, "x");
    }
    fs::create_directories(swept / "f.velora-FEDCBA9876543210.part" / "inside");
    put(swept / "f.velora-FEDCBA9876543210.part" / "inside" / "file", "x");
    const int held = ::open((swept / alive).c_str(), O_RDWR);
    ASSERT_EQ(::flock(held, LOCK_EX), 0);
    write_file(swept / "c.txt", "x");
    ::close(held);
    EXPECT_THAT(names_in(swept), ElementsAre(alive, "c.txt", "machine.part", "x.velora-0123456789ABCDE.part",
                                             "x.velora-0123456789ABCDEF.party", "x.velora-0123456789ABCDEG.part"));
}

TEST_F(Files, AFolderIsThereAsAWholeOrNotAtAll)
{
    const fs::path place = folder / "above" / "made";
    {
        AtomicFolder made(place);
        fs::create_directory(made.path() / "inner");
        put(made.path() / "inner" / "file", "x");
    }
    EXPECT_TRUE(names_in(folder / "above").empty());
    fs::create_directories(place);  // an empty one is taken
    {
        AtomicFolder made(place);
        put(made.path() / "file", "x");
        made.finish();
    }
    EXPECT_THAT(names_in(folder / "above"), ElementsAre("made"));
    EXPECT_THAT(names_in(place), ElementsAre("file"));
    AtomicFolder late(place);
    EXPECT_THROW(late.finish(), fs::filesystem_error) << "a folder that holds something stays";
}

/// Runs the action in a program of its own, which is to end by it; answers with the signal that ended it.
int signal_that_ends(const std::function<void()>& action)
{
    const pid_t child = ::fork();
    if (child == 0) {
        remove_parts_on_signals();
        action();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

TEST_F(Files, ASignalRemovesThePartsAndStillEndsTheProgram)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
        EXPECT_EQ(signal, signal_that_ends([&] {
                      write_file(folder / "done.txt", "whole");
                      const AtomicFile gone(folder / "gone.txt");
                      AtomicFolder making(folder / "making");
                      fs::create_directories(making.path() / "deep" / "deeper");
                      put(making.path() / "deep" / "deeper" / "file", "x");
                      AtomicFile again(folder / "again.txt");
                      again.write("half");
                      ::raise(signal);
                  }));
        EXPECT_THAT(names_in(folder), ElementsAre("done.txt")) << signal;
        EXPECT_EQ(0, signal_that_ends([&] {
                      ::signal(signal, SIG_IGN);
                      remove_parts_on_signals();
                      AtomicFile file(folder / "done.txt");
                      ::raise(signal);
                      file.finish();
                  }))
            << "what is to be ignored stays ignored";
    }
}

TEST_F(Files, AFileThatGrowsBeyondItsLimitIsAnErrorAndNoEnd)
{
    EXPECT_EQ(0, signal_that_ends([&] {
                  rlimit small{1000, RLIM_INFINITY};
                  ::setrlimit(RLIMIT_FSIZE, &small);
                  if (refusal([&] { write_file(folder / "big", std::string(5000, 'x')); }).empty()) ::abort();
              }));
    EXPECT_TRUE(names_in(folder).empty());
}

TEST_F(Files, ARelativeNameStaysInItsFolder)
{
    fs::create_directories(folder / "in" / "deep");
    fs::create_directories(folder / "inner");
    for (const char* name : {"in/pic", "in/deep/pic", "out", "inner/out"}) put(folder / name, "x");
    fs::create_symlink("../out", folder / "in" / "link_out");
    fs::create_symlink("deep/pic", folder / "in" / "link_in");
    fs::create_directory_symlink("..", folder / "in" / "up");
    fs::create_symlink("../not_yet", folder / "in" / "dangling");
    fs::create_directory_symlink("in", folder / "in_too");
    struct Case {
        const char* why;
        std::string name;
        const char* found;  ///< below the folder; none when refused
    };
    const fs::path root = fs::canonical(folder);
    for (const auto& c :
         {Case{"a file", "pic", "in/pic"}, Case{"a file below", "deep/pic", "in/deep/pic"},
          Case{"out and in again", "../in/pic", "in/pic"}, Case{"out", "../out", nullptr},
          Case{"the folder's name begins alike", "../inner/out", nullptr},
          Case{"a link that leads out", "link_out", nullptr}, Case{"a link that stays", "link_in", "in/deep/pic"},
          Case{"a folder's link that leads out", "up/out", nullptr},
          Case{"a link to what is not there yet", "dangling", nullptr},
          Case{"out of a folder that is not there", "none/../../out", nullptr},
          Case{"a file that is not there", "none/yet", "in/none/yet"},
          Case{"an absolute name", (root / "in" / "pic").string(), nullptr},
          Case{"a name with an end inside", std::string("pic\0/../../out", 14), nullptr},
          Case{"the folder itself", ".", "in"}}) {
        for (const char* base : {"in", "in_too"}) {
            const auto found = confined_path(folder / base, c.name);
            EXPECT_EQ(found.has_value(), c.found != nullptr) << c.why;
            if (found && c.found) {
                EXPECT_EQ(*found, root / c.found) << c.why;
            }
        }
    }
}

}  // namespace
}  // namespace velora
