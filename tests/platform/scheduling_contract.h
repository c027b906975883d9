#pragma once

#include "platform/platform.h"
#include "tests/platform/contract_suite.h"

#include <functional>

namespace lomaris::test {

/// The world in which the scheduling contract is watched: nothing but a platform, which ends with the world.
class SchedulingWorld {
public:
    virtual ~SchedulingWorld() = default;

    virtual Platform& platform() = 0;
};

using SchedulingWorldMaker = WorldMaker<SchedulingWorld>;

/// Asserts orders and lower bounds of times only, so that it holds on a busy machine as well.
class SchedulingContract : public ContractSuite<SchedulingWorld> {
protected:
    Scheduling& scheduling() { return world().platform().scheduling(); }
    /// Turns the run loop in short slices until `done` answers yes, or gives up after many; whether it did.
    bool turnUntil(const std::function<bool()>& done);
};

}  // namespace lomaris::test
