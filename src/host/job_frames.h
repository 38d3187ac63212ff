#pragma once

#include <cstdint>
#include <streambuf>
#include <string>
#include <string_view>

namespace velora {

/// What a process that works for another one tells it, piece by piece through a pipe of the system.
struct JobFrame {
    enum class Kind : char { Out = 'O', Err = 'E', Box = 'B', Pipe = 'P', Done = 'D' };

    Kind kind = Kind::Done;
    std::string text;  ///< a box as icon, length of the title, title and text; of a document that is done its status
};

/// Keeps the pieces of a document until it is done. The reader may be busy with another process for long, and who
/// waited for him in the midst of a document would hold what that other one waits for: a store that it reads.
class FrameOutbox {
public:
    explicit FrameOutbox(int handle) : handle_(handle) {}

    void put(JobFrame::Kind kind, std::string_view text);
    /// Writes all that was put. @throws std::system_error when nobody reads any more
    void send();

private:
    int handle_;
    std::string waiting_;
};

/// Reads the next piece. False at the end, also in the middle of a piece.
bool read_frame(int handle, JobFrame& frame);

/// A stream's buffer that goes out as pieces of one kind.
class FrameBuffer final : public std::streambuf {
public:
    FrameBuffer(FrameOutbox& outbox, JobFrame::Kind kind) : outbox_(outbox), kind_(kind) {}

protected:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* text, std::streamsize size) override;

private:
    FrameOutbox& outbox_;
    JobFrame::Kind kind_;
};

}  // namespace velora
