#pragma once

#include <string>
#include <string_view>

#include "adapters/cups/cups_library.h"

namespace velora::cups {

/// Queues of the scheduler come at once; the search for printers of the network takes a second.
enum class Reach { Queues, Network };

/// The printers that CUPS found when this was made.
class Destinations {
public:
    explicit Destinations(Reach reach);
    ~Destinations();
    Destinations(const Destinations&) = delete;
    Destinations& operator=(const Destinations&) = delete;

    [[nodiscard]] int count() const { return count_; }
    [[nodiscard]] cups_dest_t& at(int index) const { return all_[index]; }
    /// Null for a name that no printer has.
    [[nodiscard]] cups_dest_t* find(std::string_view name) const;
    /// Blank for an option that the printer does not tell.
    [[nodiscard]] std::string option(const cups_dest_t& destination, const char* name) const;

private:
    static int on_destination(void* self, unsigned flags, cups_dest_t* found) noexcept;

    const CupsLibrary& cups_ = CupsLibrary::loaded();
    cups_dest_t* all_ = nullptr;
    int count_ = 0;
};

/// A printer's name as people choose it: with the instance of a queue that has several.
std::string name_of(const cups_dest_t& destination);

}  // namespace velora::cups
