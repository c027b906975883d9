#pragma once

#include "platform/simulated/applications.h"
#include "platform/simulated/call_latency.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/reactor.h"
#include "platform/simulated/scheduler.h"
#include "platform/simulated/simulated_accessibility.h"
#include "platform/simulated/simulated_events.h"
#include "platform/simulated/simulated_pasteboard.h"
#include "platform/simulated/simulated_scheduling.h"
#include "platform/simulated/simulated_workspace.h"
#include "platform/simulated/this_process.h"

namespace lomaris::simulated {

/// The parts of a simulated desktop.
struct World {
    Scheduler scheduler;
    ThisProcess process{scheduler};
    Journal journal{scheduler, process};
    CallLatency latency{scheduler, process};
    Applications applications;
    Reactor reactor{*this};
    SimulatedAccessibility accessibility{journal, latency, applications, reactor};
    SimulatedWorkspace workspace{journal, latency, applications};
    SimulatedScheduling scheduling{scheduler, process, journal};
    SimulatedPasteboard pasteboard{scheduler, process, journal, latency, scheduling};
    SimulatedEvents events{scheduler, journal, latency, reactor};

    World() {
        process.setServicesEnd([this] { pasteboard.resolvePromises(); });
        process.setAfterEnd([this](ThisProcess::Ending ending) { pasteboard.loseProcess(ending); });
    }
    World(const World&) = delete;
    World& operator=(const World&) = delete;
    /// Resolves promises and ends the background blocks while all parts still exist.
    ~World() {
        process.finish();
        scheduler.finish();
    }
};

}  // namespace lomaris::simulated
