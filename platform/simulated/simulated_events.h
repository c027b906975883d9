#pragma once

#include "platform/event_services.h"
#include "platform/simulated/call_latency.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/reactor.h"
#include "platform/simulated/scheduler.h"
#include "platform/simulated/simulated_desktop.h"

#include <optional>
#include <vector>

namespace lomaris::simulated {

/// The event services of the simulated desktop. Posted key strokes are recorded and delivered to the applications.
class SimulatedEvents final : public EventServices {
public:
    SimulatedEvents(Scheduler& scheduler, Journal& journal, CallLatency& latency, Reactor& reactor)
        : scheduler_(scheduler), journal_(journal), latency_(latency), reactor_(reactor) {}

    void setAccess(bool granted) { isGranted_ = granted; }
    void setRequestAnswer(bool granted) { requestAnswer_ = granted; }
    void failKeyStrokes(int count) { failures_ = count; }
    void setCounters(InputCounters counters) { counters_ = counters; }
    [[nodiscard]] InputCounters counters() const { return counters_; }
    void count(InputEventType type);
    [[nodiscard]] const std::vector<PostedKeyStroke>& posted() const { return posted_; }

    bool preflightPostEventAccess() override;
    bool requestPostEventAccess() override;
    std::unique_ptr<KeyStrokeEvents> createKeyStroke(KeyStroke keyStroke) override;
    void postToSession(const KeyStrokeEvents& events) override;
    void postToProcess(const KeyStrokeEvents& events, ProcessIdentifier processIdentifier) override;
    std::uint32_t inputCounter(InputEventType type) override;

private:
    [[nodiscard]] std::uint32_t* counterOf(InputEventType type);
    /// Posts a key stroke; all key strokes pass through here.
    void deliver(KeyStroke keyStroke, std::optional<ProcessIdentifier> processIdentifier);

    Scheduler& scheduler_;
    Journal& journal_;
    CallLatency& latency_;
    Reactor& reactor_;
    bool isGranted_ = true;
    bool requestAnswer_ = false;
    int failures_ = 0;
    InputCounters counters_;
    std::vector<PostedKeyStroke> posted_;
};

}  // namespace lomaris::simulated
