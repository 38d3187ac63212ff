#pragma once

#include <functional>

#include "host/faults/fault_plan.h"
#include "host/program.h"

namespace velora::testing {

using Strings = std::vector<std::string>;

inline constexpr const char* kEarlier = "what stood here before";
inline constexpr const char* kDiskWords = "No space left on device";

/// A document and what is asked for it.
struct Document {
    std::string kind;
    Strings command;
    bool is_marked = false;  ///< its quote says that it was printed
    bool in_slips = false;   ///< it goes out in several, of which the first may have gone when another fails
};

/// What fails, and what went through all the same.
struct Line {
    FaultPlan database, accounting, disk, printers, mail;
    size_t printed = 0;
    size_t sent = 0;
};

/// What a run left.
struct Left {
    Ran ran;
    std::string text;   ///< of the target
    std::string boxes;  ///< as lines of JSON
    Strings files;      ///< in the target's folder
    std::string marks;  ///< of the quote, confirmation and picking slip

    [[nodiscard]] bool is_delivered() const { return ran.status == 0 || ran.status == 4; }
};

/// Runs the program again and again, each time with a fault at another call of one of its ports.
class WalkedRun : public HostTest {
protected:
    /// How many of the calls of a kind fail beside the last.
    static constexpr size_t kAll = SIZE_MAX;
    static constexpr size_t kFirst = 1;

    void SetUp() override;

    [[nodiscard]] fs::path target() const { return scratch("export") / "it.pdf"; }
    [[nodiscard]] const fs::path& folder() const { return folder_; }
    [[nodiscard]] fs::path settings() const { return scratch("user") / "settings.ini"; }
    /// One of each kind.
    [[nodiscard]] std::vector<Document> documents() const;
    [[nodiscard]] Document quote() const { return documents().front(); }

    /// Runs a command, in which whatever the line says fails. Nothing may be left where temporary files are.
    [[nodiscard]] Ran run_on(Line& line, const Strings& command) const;
    /// The same over a target that stands there already, for a quote that nobody printed yet.
    [[nodiscard]] Left deliver(Line& line, const Document& document, Strings where = {}) const;

    /// Runs once without a fault, then again and again with one: at the first calls of each kind, alone and with
    /// everything behind them, and at the last.
    void walk(FaultPlan Line::*plan, size_t first_ones, const std::function<void(Line&)>& run) const;

    /// Ended as it may: with the old file, without a mark and with a box, or with a whole new file and a mark.
    static void expect_nothing_half(const Left& left, const Document& document);

    static Strings files_in(const fs::path& place);

private:
    std::string ask_database(const char* sql) const;

    fs::path folder_;
};

}  // namespace velora::testing
