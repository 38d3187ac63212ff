#include "engine/picture/png_file.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "values/deflate.h"

namespace velora::engine {
namespace {

constexpr uint32_t kColorBits = 0xFFFFFF;
constexpr size_t kMostInPalette = 256;
constexpr size_t kMostColors = 8192;  // a drawing with its softened edges stays far below

/// The colours of a picture, numbered in the order in which they come.
class Colors {
public:
    /// The number of a colour; `kMostColors` when there are too many.
    size_t number(uint32_t color)
    {
        if (color == last_color_) return last_;
        size_t at = (color * 0x9E3779B1U) >> kShift;
        while (slots_[at] != 0 && found_[slots_[at] - 1].first != color) at = (at + 1) % slots_.size();
        if (slots_[at] == 0) {
            if (found_.size() == kMostColors) return kMostColors;
            found_.emplace_back(color, 0);
            slots_[at] = static_cast<uint32_t>(found_.size());
        }
        last_color_ = color;
        last_ = slots_[at] - 1;
        return last_;
    }
    void count(size_t number) { ++found_[number].second; }
    [[nodiscard]] const std::vector<std::pair<uint32_t, uint32_t>>& found() const { return found_; }

private:
    static constexpr unsigned kShift = 32 - 15;
    std::vector<uint32_t> slots_ = std::vector<uint32_t>(size_t{1} << 15);  ///< index into `found_` and one; 0 free
    std::vector<std::pair<uint32_t, uint32_t>> found_;                      ///< colour and how often
    uint32_t last_color_ = ~0U;
    size_t last_ = 0;
};

int distance(uint32_t one, uint32_t other)
{
    int sum = 0;
    for (const int shift : {16, 8, 0}) {
        const int apart = static_cast<int>(one >> shift & 255) - static_cast<int>(other >> shift & 255);
        sum += apart * apart;
    }
    return sum;
}

struct Palette {
    std::vector<uint32_t> colors;
    std::vector<uint8_t> entry_of;  ///< by number of the colour
};

Palette palette_of(const std::vector<std::pair<uint32_t, uint32_t>>& found)
{
    std::vector<size_t> order(found.size());
    for (size_t at = 0; at < order.size(); ++at) order[at] = at;
    std::ranges::stable_sort(order, [&](size_t a, size_t b) { return found[a].second > found[b].second; });
    Palette palette;
    palette.entry_of.resize(found.size());
    for (size_t rank = 0; rank < order.size(); ++rank) {
        const uint32_t color = found[order[rank]].first;
        size_t entry = rank;
        if (rank < kMostInPalette) {
            palette.colors.push_back(color);
        } else {
            const auto nearest =
                std::ranges::min_element(palette.colors, {}, [&](uint32_t known) { return distance(known, color); });
            entry = static_cast<size_t>(nearest - palette.colors.begin());
        }
        palette.entry_of[order[rank]] = static_cast<uint8_t>(entry);
    }
    return palette;
}

void append_number(std::string& out, uint32_t number)
{
    for (int shift = 24; shift >= 0; shift -= 8) out += static_cast<char>(number >> shift & 255);
}

void append_chunk(std::string& out, std::string_view name, std::string_view bytes)
{
    append_number(out, static_cast<uint32_t>(bytes.size()));
    const size_t from = out.size();
    out.append(name).append(bytes);
    append_number(out, archive_check(std::string_view(out).substr(from)));
}

/// Rows of palette entries, each behind the number of its filter: none. Empty when there are too many colours.
std::string palette_rows(std::span<const uint32_t> points, uint32_t width, uint32_t height, std::string& colors)
{
    Colors known;
    std::vector<uint16_t> numbers(points.size());
    for (size_t at = 0; at < points.size(); ++at) {
        const size_t number = known.number(points[at] & kColorBits);
        if (number == kMostColors) return {};
        known.count(number);
        numbers[at] = static_cast<uint16_t>(number);
    }
    const Palette palette = palette_of(known.found());
    for (const uint32_t color : palette.colors) {
        for (const int shift : {16, 8, 0}) colors += static_cast<char>(color >> shift & 255);
    }
    std::string rows;
    rows.reserve(points.size() + height);
    for (size_t y = 0, at = 0; y < height; ++y) {
        rows += '\0';
        for (size_t x = 0; x < width; ++x, ++at) rows += static_cast<char>(palette.entry_of[numbers[at]]);
    }
    return rows;
}

/// Rows of colours, each as what differs from the row above.
template <size_t Parts>
std::string color_rows(std::span<const uint32_t> points, uint32_t width, uint32_t height,
                       const std::array<int, Parts>& shifts)
{
    constexpr char kUp = 2;
    std::string rows;
    rows.reserve((size_t{width} * Parts + 1) * height);
    for (size_t y = 0, at = 0; y < height; ++y) {
        rows += kUp;
        for (size_t x = 0; x < width; ++x, ++at) {
            const uint32_t above = y == 0 ? 0 : points[at - width];
            for (const int shift : shifts) rows += static_cast<char>((points[at] >> shift) - (above >> shift));
        }
    }
    return rows;
}

std::string png_file(uint32_t width, uint32_t height, char kind, const std::string& colors, const std::string& rows)
{
    std::string head;
    append_number(head, width);
    append_number(head, height);
    head += {8, kind, 0, 0, 0};
    std::string out = "\x89PNG\r\n\x1A\n";
    append_chunk(out, "IHDR", head);
    if (!colors.empty()) append_chunk(out, "PLTE", colors);
    append_chunk(out, "IDAT", Deflater(Deflater::kFast).with_check(rows));
    append_chunk(out, "IEND", {});
    return out;
}

}  // namespace

std::string png_of(std::span<const uint32_t> points, uint32_t width, uint32_t height)
{
    constexpr char kPalette = 3, kRgb = 2;
    std::string colors;
    const std::string rows = palette_rows(points, width, height, colors);
    if (!rows.empty()) return png_file(width, height, kPalette, colors, rows);
    return png_file(width, height, kRgb, {}, color_rows(points, width, height, std::array{16, 8, 0}));
}

std::string png_with_alpha(std::span<const uint32_t> points, uint32_t width, uint32_t height)
{
    constexpr char kRgba = 6;
    return png_file(width, height, kRgba, {}, color_rows(points, width, height, std::array{16, 8, 0, 24}));
}

}  // namespace velora::engine
