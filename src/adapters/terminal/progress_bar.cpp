#include "adapters/terminal/progress_bar.h"

#include <unistd.h>

#include <ostream>

namespace velora {

namespace {

constexpr int kWidth = 30;
constexpr const char* kClearLine = "\r\x1b[K";

}  // namespace

ProgressBar::ProgressBar(std::ostream& out, bool is_terminal, std::string caption)
    : out_(out), is_terminal_(is_terminal), caption_(std::move(caption))
{
}

ProgressBar::~ProgressBar()
{
    clear();
}

void ProgressBar::clear()
{
    if (has_line_) out_ << kClearLine << std::flush;
    has_line_ = false;
    shown_percent_ = -1;
}

void ProgressBar::show(size_t done, size_t total)
{
    if (!is_terminal_ || total == 0) return;
    const int percent = static_cast<int>(static_cast<double>(std::min(done, total)) / static_cast<double>(total) * 100);
    if (percent == shown_percent_) return;
    shown_percent_ = percent;
    const auto filled = static_cast<size_t>(percent * kWidth / 100);
    write("[" + std::string(filled, '#') + std::string(kWidth - filled, ' ') + "] " + std::to_string(percent) + "%");
}

void ProgressBar::count(size_t rows)
{
    if (!is_terminal_) return;
    shown_percent_ = -1;
    write(std::to_string(rows) + " rows");
}

void ProgressBar::write(const std::string& text)
{
    has_line_ = true;
    out_ << kClearLine << caption_ << ' ' << text << std::flush;
}

bool is_error_terminal()
{
    return ::isatty(STDERR_FILENO) == 1;
}

}  // namespace velora
