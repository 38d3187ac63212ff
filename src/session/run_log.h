#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace velora {

/// What a run did that the document does not show: statements that fell away, texts that were cut, queries that ran.
class RunLog {
public:
    struct Tolerated {
        size_t row;         ///< of the pipe, from 1; 0 outside a row
        std::string field;  ///< field or statement
        int32_t number;
    };
    struct Cut {
        size_t row;
        std::string field;
        size_t from, to;  ///< characters before and after
    };
    struct Counted {
        std::string text;
        size_t count = 0;
    };

    void tolerated(size_t row, std::string_view field, int32_t number);
    void cut(size_t row, std::string_view field, size_t from, size_t to);
    void query(std::string_view text) { count(queries_, query_positions_, text); }
    void filter(std::string_view view_and_filter) { count(filters_, filter_positions_, view_and_filter); }
    /// What the person should know of the run and no box says.
    void note(std::string text) { notes_.push_back(std::move(text)); }
    /// A file that the run wrote; one that it wrote again stands there once.
    void wrote(const std::string& file);
    void clear() { *this = RunLog{}; }

    [[nodiscard]] const std::vector<Tolerated>& tolerated() const { return tolerated_; }
    [[nodiscard]] const std::vector<Cut>& cuts() const { return cuts_; }
    [[nodiscard]] const std::vector<Counted>& queries() const { return queries_; }
    [[nodiscard]] const std::vector<Counted>& filters() const { return filters_; }
    [[nodiscard]] const std::vector<std::string>& notes() const { return notes_; }
    [[nodiscard]] const std::vector<std::string>& files() const { return files_; }
    /// How many entries of the first two lists were counted only, past the number that is kept.
    [[nodiscard]] size_t dropped() const { return dropped_; }

private:
    using Positions = std::unordered_map<std::string, size_t>;
    static void count(std::vector<Counted>& list, Positions& positions, std::string_view text);
    bool has_room();

    std::vector<Tolerated> tolerated_;
    std::vector<Cut> cuts_;
    std::vector<Counted> queries_;
    std::vector<Counted> filters_;
    std::vector<std::string> notes_;
    std::vector<std::string> files_;
    Positions query_positions_;
    Positions filter_positions_;
    size_t dropped_ = 0;
};

}  // namespace velora
