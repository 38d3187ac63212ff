#include "host/job_frames.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace velora {
namespace {

constexpr size_t kHead = 1 + sizeof(uint32_t);

void write_all(int handle, const char* bytes, size_t size)
{
    while (size > 0) {
        const ssize_t written = ::write(handle, bytes, size);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) throw std::system_error(errno, std::generic_category());
        bytes += written;
        size -= static_cast<size_t>(written);
    }
}

bool read_all(int handle, char* bytes, size_t size)
{
    while (size > 0) {
        const ssize_t got = ::read(handle, bytes, size);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        bytes += got;
        size -= static_cast<size_t>(got);
    }
    return true;
}

}  // namespace

void FrameOutbox::put(JobFrame::Kind kind, std::string_view text)
{
    std::array<char, kHead> head{static_cast<char>(kind)};
    const auto size = static_cast<uint32_t>(text.size());
    std::memcpy(head.data() + 1, &size, sizeof size);
    waiting_.append(head.data(), head.size()).append(text);
}

void FrameOutbox::send()
{
    write_all(handle_, waiting_.data(), waiting_.size());
    waiting_.clear();
}

bool read_frame(int handle, JobFrame& frame)
{
    std::array<char, kHead> head{};
    if (!read_all(handle, head.data(), head.size())) return false;
    uint32_t size = 0;
    std::memcpy(&size, head.data() + 1, sizeof size);
    frame.kind = static_cast<JobFrame::Kind>(head[0]);
    frame.text.resize(size);
    return read_all(handle, frame.text.data(), size);
}

FrameBuffer::int_type FrameBuffer::overflow(int_type character)
{
    if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
    const char one = traits_type::to_char_type(character);
    xsputn(&one, 1);
    return character;
}

std::streamsize FrameBuffer::xsputn(const char* text, std::streamsize size)
{
    outbox_.put(kind_, {text, static_cast<size_t>(size)});
    return size;
}

}  // namespace velora
