#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "values/atomic_file.h"
#include "values/date_time.h"
#include "values/deflate.h"

namespace velora::engine {

/// Writes a ZIP archive, as office documents are. All parts carry the document's date, or the format's first one, so
/// that the same parts give the same bytes.
class ZipFile {
public:
    /// @param file  outlives the archive
    ZipFile(AtomicFile& file, const std::optional<DateTime>& date);

    /// @throws Fault 6 for what is beyond the format, Fault 75 as the file does
    void add(std::string name, std::string_view bytes);
    /// Writes the list of parts. The file is not finished by it.
    void finish();

private:
    struct Part {
        std::string name;
        uint32_t check = 0, packed = 0, size = 0, position = 0;
    };

    [[nodiscard]] std::string head_of(const Part& part) const;

    AtomicFile& file_;
    uint32_t date_;  ///< day and time of the format
    uint64_t written_ = 0;
    Deflater deflater_{Deflater::kSmall};
    std::vector<Part> parts_;
};

}  // namespace velora::engine
