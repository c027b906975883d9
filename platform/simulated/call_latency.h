#pragma once

#include "platform/scheduling.h"
#include "platform/simulated/scheduler.h"
#include "platform/simulated/this_process.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace lomaris::simulated {

/// The virtual time that boundary calls take before they have an effect and an answer. A call is named as in the
/// journal.
class CallLatency {
public:
    CallLatency(Scheduler& scheduler, ThisProcess& process) : scheduler_(scheduler), process_(process) {}

    /// For each call that crosses into an application, unless it has a latency of its own.
    void setOfCrossing(Duration latency) { crossing_ = latency; }
    void setOf(std::string_view call, Duration latency) { own_.insert_or_assign(std::string(call), latency); }

    /// To be passed by a call that crosses into an application. May throw, as waits do.
    void passCrossing(std::string_view call) { passOwnOr(call, crossing_); }
    /// To be passed by any other call. May throw, as waits do.
    void pass(std::string_view call) { passOwnOr(call, Duration::zero()); }

private:
    void passOwnOr(std::string_view call, Duration otherwise);

    Scheduler& scheduler_;
    ThisProcess& process_;
    Duration crossing_{0};
    std::map<std::string, Duration, std::less<>> own_;
};

}  // namespace lomaris::simulated
