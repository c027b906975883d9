#include "platform/simulated/call_latency.h"

namespace lomaris::simulated {

void CallLatency::passOwnOr(std::string_view call, Duration otherwise) {
    const auto own = own_.find(call);
    const Duration latency = own == own_.end() ? otherwise : own->second;
    if (latency <= Duration::zero() || scheduler_.isActing()) {
        return;
    }
    const Moment answered = scheduler_.momentAfter(latency);
    if (scheduler_.isMainCurrent()) {
        process_.awaitAnswer(answered);
    } else {
        scheduler_.park(answered);
    }
}

}  // namespace lomaris::simulated
