#pragma once

#include "platform/platform.h"
#include "tests/platform/contract_suite.h"

#include <functional>

namespace lomaris::test {

/// The world in which the contract of the event services is watched: this process may post events, nobody types.
class EventsWorld {
public:
    virtual ~EventsWorld() = default;

    virtual Platform& platform() = 0;
    /// The user presses a key; returns once the session has seen it.
    virtual void userTypes() = 0;
    /// Called before a key is posted to the session; returns once it will do no harm where it arrives.
    virtual void prepareForKeys() {}
    /// Whether `isReached` comes true. A world whose session takes note of posted keys a moment later waits for it.
    virtual bool comesTrue(const std::function<bool()>& isReached) { return isReached(); }
};

using EventsWorldMaker = WorldMaker<EventsWorld>;

class EventsContract : public ContractSuite<EventsWorld> {
protected:
    EventServices& events() { return world().platform().events(); }
};

}  // namespace lomaris::test
