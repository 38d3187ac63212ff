#pragma once

#include <memory>

#include "platform/database.h"

namespace velora {

/// What some accounting sessions offer beside their port: everything that is read while the snapshot lives is one state
/// of the data.
class OneState {
public:
    virtual ~OneState() = default;

    /// None where the session reads so already, or where it cannot begin: what is read next tells that.
    virtual std::unique_ptr<Snapshot> begin_snapshot() = 0;
};

}  // namespace velora
