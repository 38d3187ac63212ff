#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>

namespace velora {

/// One line of a terminal that tells how far long work has come; it vanishes with the object. Where the stream is no
/// terminal nothing is written.
class ProgressBar {
public:
    ProgressBar(std::ostream& out, bool is_terminal, std::string caption);
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar();

    /// Writes only when the percentage has changed.
    void show(size_t done, size_t total);
    /// Rows so far, where nobody knows how many there will be.
    void count(size_t rows);
    /// Takes the line away until something is shown again.
    void clear();

private:
    void write(const std::string& text);

    std::ostream& out_;
    bool is_terminal_;
    std::string caption_;
    int shown_percent_ = -1;  ///< none: nothing, or a count
    bool has_line_ = false;
};

/// True when the program's standard error goes to a terminal.
bool is_error_terminal();

}  // namespace velora
