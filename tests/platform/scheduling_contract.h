#pragma once

#include "platform/platform.h"
#include "tests/platform/contract_suite.h"

#include <functional>

namespace lomaris::test {

/// The world of the scheduling contract: a platform, which is destroyed with the world.
class SchedulingWorld {
public:
    virtual ~SchedulingWorld() = default;

    virtual Platform& platform() = 0;
};

using SchedulingWorldMaker = WorldMaker<SchedulingWorld>;

/// Asserts only the order of events and lower bounds of times, so that it also passes on a busy machine.
class SchedulingContract : public ContractSuite<SchedulingWorld> {
protected:
    Scheduling& scheduling() { return world().platform().scheduling(); }
    /// Runs the run loop in short slices until `done` returns true, or at most a fixed number of times. Returns whether
    /// `done` was true.
    bool turnUntil(const std::function<bool()>& done);
};

}  // namespace lomaris::test
