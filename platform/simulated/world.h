#pragma once

#include "platform/simulated/applications.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/scheduler.h"
#include "platform/simulated/simulated_accessibility.h"
#include "platform/simulated/simulated_events.h"
#include "platform/simulated/simulated_pasteboard.h"
#include "platform/simulated/simulated_scheduling.h"
#include "platform/simulated/simulated_workspace.h"

namespace lomaris::simulated {

/// Everything behind a simulated desktop.
struct World {
    Scheduler scheduler;
    Journal journal{scheduler};
    Applications applications;
    SimulatedAccessibility accessibility{scheduler, journal, applications};
    SimulatedWorkspace workspace{journal, applications};
    SimulatedScheduling scheduling{scheduler, journal};
    SimulatedPasteboard pasteboard{scheduler, journal, scheduling};
    SimulatedEvents events{scheduler, journal};

    World() = default;
    World(const World&) = delete;
    World& operator=(const World&) = delete;
    /// Everything is still there while promises are resolved and background blocks come to their end.
    ~World() {
        pasteboard.resolvePromises();
        scheduler.finish();
    }
};

}  // namespace lomaris::simulated
