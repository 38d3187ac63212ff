#include <algorithm>
#include <array>
#include <cstdlib>

#include "engine/chart/qr_data.h"

namespace velora::engine {
namespace {

constexpr int kMasks = 8;

bool is_inverted(int mask, int x, int y)
{
    switch (mask) {
        case 0:
            return (x + y) % 2 == 0;
        case 1:
            return y % 2 == 0;
        case 2:
            return x % 3 == 0;
        case 3:
            return (x + y) % 3 == 0;
        case 4:
            return (x / 3 + y / 2) % 2 == 0;
        case 5:
            return x * y % 2 + x * y % 3 == 0;
        case 6:
            return (x * y % 2 + x * y % 3) % 2 == 0;
        default:
            return ((x + y) % 2 + x * y % 3) % 2 == 0;
    }
}

/// Draws the symbol: what every one has, then the codewords, then a mask.
class Painter {
public:
    Painter(int version, QrLevel level)
        : version_(version), level_(level), code_{version * 4 + 17, {}}, fixed_(square()), size_(code_.size)
    {
        code_.modules = square();
        timing();
        alignment();
        for (const auto& [x, y] : {std::pair{3, 3}, std::pair{size_ - 4, 3}, std::pair{3, size_ - 4}}) finder(x, y);
        format(0);  // keeps its room
        if (version_ >= 7) version_bits();
    }

    void codewords(const std::vector<uint8_t>& bytes)
    {
        size_t bit = 0;
        for (int right = size_ - 1; right >= 1; right -= 2) {
            if (right == 6) right = 5;
            const bool upwards = ((right + 1) & 2) == 0;
            for (int step = 0; step < size_; ++step) {
                const int y = upwards ? size_ - 1 - step : step;
                for (const int x : {right, right - 1}) {
                    if (fixed_[at(x, y)] || bit >= bytes.size() * 8) continue;
                    code_.modules[at(x, y)] = bytes[bit / 8] >> (7 - bit % 8) & 1;
                    ++bit;
                }
            }
        }
    }

    QrCode masked(int mask)
    {
        format(mask);
        QrCode result = code_;
        for (int y = 0; y < size_; ++y) {
            for (int x = 0; x < size_; ++x) {
                if (!fixed_[at(x, y)] && is_inverted(mask, x, y)) result.modules[at(x, y)].flip();
            }
        }
        return result;
    }

private:
    [[nodiscard]] std::vector<bool> square() const
    {
        return std::vector<bool>(static_cast<size_t>(code_.size) * static_cast<size_t>(code_.size));
    }
    [[nodiscard]] size_t at(int x, int y) const { return static_cast<size_t>(y * size_ + x); }

    void fix(int x, int y, bool dark)
    {
        if (x < 0 || y < 0 || x >= size_ || y >= size_) return;
        code_.modules[at(x, y)] = dark;
        fixed_[at(x, y)] = true;
    }

    void timing()
    {
        for (int along = 0; along < size_; ++along) {
            fix(along, 6, along % 2 == 0);
            fix(6, along, along % 2 == 0);
        }
    }

    void finder(int middle_x, int middle_y)
    {
        for (int dy = -4; dy <= 4; ++dy) {
            for (int dx = -4; dx <= 4; ++dx) {
                const int ring = std::max(std::abs(dx), std::abs(dy));
                fix(middle_x + dx, middle_y + dy, ring != 2 && ring != 4);
            }
        }
    }

    [[nodiscard]] std::vector<int> alignment_places() const
    {
        if (version_ == 1) return {};
        const int count = version_ / 7 + 2;
        const int step = version_ == 32 ? 26 : (version_ * 4 + count * 2 + 1) / (count * 2 - 2) * 2;
        std::vector<int> places{6};
        for (int left = count - 2; left >= 0; --left) places.push_back(size_ - 7 - left * step);
        return places;
    }

    void alignment()
    {
        const auto places = alignment_places();
        for (const int x : places) {
            for (const int y : places) {
                const bool in_finder = (x == 6 && (y == 6 || y == size_ - 7)) || (y == 6 && x == size_ - 7);
                if (in_finder) continue;
                for (int dy = -2; dy <= 2; ++dy) {
                    for (int dx = -2; dx <= 2; ++dx) {
                        fix(x + dx, y + dy, std::max(std::abs(dx), std::abs(dy)) != 1);
                    }
                }
            }
        }
    }

    static unsigned remainder(unsigned value, unsigned divisor, int degree)
    {
        for (int round = 0; round < degree; ++round) {
            value = (value << 1) ^ ((value >> (degree - 1) & 1) * divisor);
        }
        return value;
    }

    void format(int mask)
    {
        constexpr std::array<unsigned, 4> kLevelBits = {1, 0, 3, 2};
        const unsigned data = kLevelBits[static_cast<size_t>(level_)] << 3 | static_cast<unsigned>(mask);
        const unsigned bits = (data << 10 | (remainder(data, 0x537, 10) & 0x3ff)) ^ 0x5412;
        const auto bit = [&](int index) { return (bits >> index & 1) != 0; };
        for (int index = 0; index < 15; ++index) {
            // the first copy runs around the upper left finder and steps over the timing lines
            if (index < 8) {
                fix(8, index < 6 ? index : index + 1, bit(index));
                fix(size_ - 1 - index, 8, bit(index));
            } else {
                fix(index == 8 ? 7 : 14 - index, 8, bit(index));
                fix(8, size_ - 15 + index, bit(index));
            }
        }
        fix(8, size_ - 8, true);
    }

    void version_bits()
    {
        const auto number = static_cast<unsigned>(version_);
        const unsigned bits = number << 12 | (remainder(number, 0x1f25, 12) & 0xfff);
        for (int index = 0; index < 18; ++index) {
            const bool dark = (bits >> index & 1) != 0;
            fix(size_ - 11 + index % 3, index / 3, dark);
            fix(index / 3, size_ - 11 + index % 3, dark);
        }
    }

    int version_;
    QrLevel level_;
    QrCode code_;
    std::vector<bool> fixed_;
    int size_;
};

/// Penalties of one row or column: long runs of a colour, and what looks like a finder.
template <class Dark>
int line_penalty(int size, Dark dark)
{
    constexpr unsigned kFinderBehindLight = 0b00001011101, kFinderBeforeLight = 0b10111010000;
    int penalty = 0;
    int run = 0;
    unsigned window = 0;
    for (int along = 0; along < size; ++along) {
        run = along > 0 && dark(along) == dark(along - 1) ? run + 1 : 1;
        if (run == 5) penalty += 3;
        if (run > 5) ++penalty;
        window = (window << 1 | (dark(along) ? 1u : 0u)) & 0x7ff;
        if (along >= 10 && (window == kFinderBehindLight || window == kFinderBeforeLight)) penalty += 40;
    }
    return penalty;
}

int penalty_of(const QrCode& code)
{
    int penalty = 0;
    int dark = 0;
    for (int y = 0; y < code.size; ++y) {
        penalty += line_penalty(code.size, [&](int x) { return code.dark(x, y); });
        penalty += line_penalty(code.size, [&](int x) { return code.dark(y, x); });
        for (int x = 0; x < code.size; ++x) {
            dark += code.dark(x, y) ? 1 : 0;
            const bool has_square = x > 0 && y > 0;
            if (has_square && code.dark(x, y) == code.dark(x - 1, y) && code.dark(x, y) == code.dark(x, y - 1) &&
                code.dark(x, y) == code.dark(x - 1, y - 1)) {
                penalty += 3;
            }
        }
    }
    const int percent = dark * 100 / (code.size * code.size);
    return penalty + std::abs(percent - 50) / 5 * 10;
}

}  // namespace

QrCode qr_code(std::string_view bytes, QrLevel level)
{
    if (bytes.empty()) throw BarcodeError("the code is empty");
    const int version = qr_version_for(bytes.size(), level);
    Painter painter(version, level);
    painter.codewords(qr_codewords(bytes, version, level));
    QrCode best;
    int least = 0;
    for (int mask = 0; mask < kMasks; ++mask) {
        QrCode code = painter.masked(mask);
        const int penalty = penalty_of(code);
        if (mask > 0 && penalty >= least) continue;
        least = penalty;
        best = std::move(code);
    }
    return best;
}

}  // namespace velora::engine
