#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "values/atomic_file.h"

namespace velora::engine {

/// A file whose head is known last: the body goes to an unnamed temporary file until the head can be written.
class TwoPartFile {
public:
    /// @throws Fault 75 when there is no room for temporary files
    explicit TwoPartFile(std::unique_ptr<AtomicFile> file);

    void body(std::string_view bytes);
    /// Writes head, body and tail to the file and gives it its name.
    void finish(std::string_view head, std::string_view tail);

private:
    struct Close {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };
    [[noreturn]] void fail(int error) const;

    std::unique_ptr<AtomicFile> file_;
    std::unique_ptr<std::FILE, Close> spool_;
};

}  // namespace velora::engine
