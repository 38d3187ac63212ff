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
    if (shown_percent_ >= 0) out_ << kClearLine << std::flush;
}

void ProgressBar::show(size_t done, size_t total)
{
    if (!is_terminal_ || total == 0) return;
    const int percent = static_cast<int>(static_cast<double>(std::min(done, total)) / static_cast<double>(total) * 100);
    if (percent == shown_percent_) return;
    shown_percent_ = percent;
    const auto filled = static_cast<size_t>(percent * kWidth / 100);
    out_ << kClearLine << caption_ << " [" << std::string(filled, '#') << std::string(kWidth - filled, ' ') << "] "
         << percent << "%" << std::flush;
}

bool is_error_terminal()
{
    return ::isatty(STDERR_FILENO) == 1;
}

}  // namespace velora
