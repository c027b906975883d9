#pragma once

#include "platform/scheduling.h"
#include "platform/simulated/scheduler.h"
#include "platform/simulated/this_process.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace lomaris::simulated {

/// The virtual time that each boundary call takes before it has an effect and returns. Calls are named as in the
/// journal.
class CallLatency {
public:
    CallLatency(Scheduler& scheduler, ThisProcess& process) : scheduler_(scheduler), process_(process) {}

    /// Sets the latency of each call that sends a request to an application, unless the call has a latency of its own.
    void setOfCrossing(Duration latency) { crossing_ = latency; }
    void setOf(std::string_view call, Duration latency) { own_.insert_or_assign(std::string(call), latency); }

    /// Must be called by each boundary call that sends a request to an application. May throw, as waits do.
    void passCrossing(std::string_view call) { passOwnOr(call, crossing_); }
    /// Must be called by every other boundary call. May throw, as waits do.
    void pass(std::string_view call) { passOwnOr(call, Duration::zero()); }

private:
    void passOwnOr(std::string_view call, Duration otherwise);

    Scheduler& scheduler_;
    ThisProcess& process_;
    Duration crossing_{0};
    std::map<std::string, Duration, std::less<>> own_;
};

}  // namespace lomaris::simulated
