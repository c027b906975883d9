#pragma once

#include "platform/platform.h"
#include "tests/platform/contract_suite.h"

#include <functional>

namespace lomaris::test {

/// The world of the events contract: this process may post events, and the user does not type.
class EventsWorld {
public:
    virtual ~EventsWorld() = default;

    virtual Platform& platform() = 0;
    /// The user presses a key; returns once the session has counted it.
    virtual void userTypes() = 0;
    /// Called before a key is posted to the session; returns once the key can do no harm.
    virtual void prepareForKeys() {}
    /// Returns whether `isReached` becomes true. A world whose session counts posted keys with a delay polls it.
    virtual bool comesTrue(const std::function<bool()>& isReached) { return isReached(); }
};

using EventsWorldMaker = WorldMaker<EventsWorld>;

/// What every platform must guarantee for `EventServices`.
class EventsContract : public ContractSuite<EventsWorld> {
protected:
    EventServices& events() { return world().platform().events(); }
};

}  // namespace lomaris::test
