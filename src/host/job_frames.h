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

/// Writes a piece as a whole. @throws std::system_error when nobody reads any more
void write_frame(int handle, JobFrame::Kind kind, std::string_view text);

/// Reads the next piece. False at the end, also in the middle of a piece.
bool read_frame(int handle, JobFrame& frame);

/// A stream's buffer that goes out as pieces of one kind.
class FrameBuffer final : public std::streambuf {
public:
    FrameBuffer(int handle, JobFrame::Kind kind) : handle_(handle), kind_(kind) {}

protected:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* text, std::streamsize size) override;

private:
    int handle_;
    JobFrame::Kind kind_;
};

}  // namespace velora
