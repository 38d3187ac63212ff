#include "adapters/cups/destinations.h"

namespace velora::cups {
namespace {

constexpr int kSearchMilliseconds = 1000;

}  // namespace

Destinations::Destinations(Reach reach)
{
    // Where the discovered ones are asked to be none, libcups does not look for any.
    const cups_ptype_t which = reach == Reach::Queues ? CUPS_PRINTER_DISCOVERED : 0;
    cups_.enum_dests(CUPS_DEST_FLAGS_NONE, kSearchMilliseconds, nullptr, 0, which, &Destinations::on_destination, this);
}

Destinations::~Destinations()
{
    cups_.free_dests(count_, all_);
}

int Destinations::on_destination(void* self, unsigned flags, cups_dest_t* found) noexcept
{
    auto& here = *static_cast<Destinations*>(self);
    if ((flags & CUPS_DEST_FLAGS_REMOVED) != 0) {
        here.count_ = here.cups_.remove_dest(found->name, found->instance, here.count_, &here.all_);
    } else {
        here.count_ = here.cups_.copy_dest(found, here.count_, &here.all_);
    }
    return 1;  // go on
}

cups_dest_t* Destinations::find(std::string_view name) const
{
    for (int index = 0; index < count_; ++index) {
        if (name_of(all_[index]) == name) return &all_[index];
    }
    return nullptr;
}

std::string Destinations::option(const cups_dest_t& destination, const char* name) const
{
    const char* value = cups_.get_option(name, destination.num_options, destination.options);
    return value != nullptr ? value : "";
}

std::string name_of(const cups_dest_t& destination)
{
    const std::string name = destination.name;
    return destination.instance == nullptr ? name : name + "/" + destination.instance;
}

}  // namespace velora::cups
