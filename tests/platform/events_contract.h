#pragma once

#include "platform/platform.h"
#include "tests/platform/contract_suite.h"

namespace lomaris::test {

/// The world in which the contract of the event services is watched: this process may post events, nobody types.
class EventsWorld {
public:
    virtual ~EventsWorld() = default;

    virtual Platform& platform() = 0;
    /// The user presses a key; returns once the session has seen it.
    virtual void userTypes() = 0;
};

using EventsWorldMaker = WorldMaker<EventsWorld>;

class EventsContract : public ContractSuite<EventsWorld> {
protected:
    EventServices& events() { return world().platform().events(); }
};

}  // namespace lomaris::test
