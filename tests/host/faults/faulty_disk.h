#pragma once

#include <filesystem>

#include "host/faults/fault_plan.h"

namespace velora::testing {

/// Below a folder the calls by which a program changes a file fail by a plan, for the length of a scope: what comes to
/// the C library from anywhere in this process. A write that fails has left half of its bytes.
class FaultyDisk {
public:
    FaultyDisk(const std::filesystem::path& folder, FaultPlan& plan);
    ~FaultyDisk();
    FaultyDisk(const FaultyDisk&) = delete;
    FaultyDisk& operator=(const FaultyDisk&) = delete;
};

}  // namespace velora::testing
