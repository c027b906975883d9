#include "platform/simulated/simulated_events.h"

#include "platform/simulated/describe.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <string>

namespace lomaris::simulated {
namespace {

class SimulatedKeyStrokeEvents final : public KeyStrokeEvents {
public:
    explicit SimulatedKeyStrokeEvents(KeyStroke created) : keyStroke(created) {}

    KeyStroke keyStroke;
};

KeyStroke keyStrokeOf(const KeyStrokeEvents& events) {
    return static_cast<const SimulatedKeyStrokeEvents&>(events).keyStroke;
}

void appendKeyStroke(std::string& line, KeyStroke keyStroke) {
    std::array<char, 48> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "key %u, flags 0x%llx", unsigned{keyStroke.keyCode},
                  static_cast<unsigned long long>(keyStroke.flags));
    line += buffer.data();
}

}  // namespace

void SimulatedEvents::count(InputEventType type) {
    if (std::uint32_t* counter = counterOf(type)) {
        ++*counter;
    }
}

bool SimulatedEvents::preflightPostEventAccess() {
    if (!journal_.admits()) {
        return false;
    }
    const std::size_t call = journal_.begin("preflightPostEventAccess() -> ");
    latency_.pass("preflightPostEventAccess");
    appendBoolean(journal_.line(call), isGranted_);
    return isGranted_;
}

bool SimulatedEvents::requestPostEventAccess() {
    if (!journal_.admits()) {
        return false;
    }
    const std::size_t call = journal_.begin("requestPostEventAccess() -> ");
    latency_.pass("requestPostEventAccess");
    isGranted_ = isGranted_ || requestAnswer_;
    appendBoolean(journal_.line(call), isGranted_);
    return isGranted_;
}

std::unique_ptr<KeyStrokeEvents> SimulatedEvents::createKeyStroke(KeyStroke keyStroke) {
    if (!journal_.admits()) {
        return nullptr;
    }
    const std::size_t call = journal_.begin("createKeyStroke(");
    appendKeyStroke(journal_.line(call), keyStroke);
    latency_.pass("createKeyStroke");
    if (failures_ > 0) {
        --failures_;
        journal_.line(call) += ") -> nothing";
        return nullptr;
    }
    journal_.line(call) += ") -> events";
    return std::make_unique<SimulatedKeyStrokeEvents>(keyStroke);
}

void SimulatedEvents::postToSession(const KeyStrokeEvents& events) {
    if (!journal_.admits()) {
        return;
    }
    std::string& line = journal_.line(journal_.begin("postToSession("));
    appendKeyStroke(line, keyStrokeOf(events));
    line += ')';
    latency_.pass("postToSession");
    count(InputEventType::keyDown);
    deliver(keyStrokeOf(events), std::nullopt);
}

void SimulatedEvents::postToProcess(const KeyStrokeEvents& events, ProcessIdentifier processIdentifier) {
    if (!journal_.admits()) {
        return;
    }
    std::string& line = journal_.line(journal_.begin("postToProcess("));
    appendKeyStroke(line, keyStrokeOf(events));
    line += ", ";
    appendInteger(line, processIdentifier);
    line += ')';
    latency_.pass("postToProcess");
    deliver(keyStrokeOf(events), processIdentifier);
}

std::uint32_t SimulatedEvents::inputCounter(InputEventType type) {
    if (!journal_.admits()) {
        return 0;
    }
    const std::size_t call = journal_.begin("inputCounter(");
    appendInteger(journal_.line(call), static_cast<std::int64_t>(type));
    latency_.pass("inputCounter");
    const std::uint32_t* counter = counterOf(type);
    const std::uint32_t answer = counter == nullptr ? 0 : *counter;
    journal_.line(call) += ") -> ";
    appendInteger(journal_.line(call), answer);
    return answer;
}

std::uint32_t* SimulatedEvents::counterOf(InputEventType type) {
    switch (type) {
        case InputEventType::keyDown:
            return &counters_.keyDown;
        case InputEventType::leftMouseDown:
            return &counters_.leftMouseDown;
        case InputEventType::rightMouseDown:
            return &counters_.rightMouseDown;
        case InputEventType::otherMouseDown:
            return &counters_.otherMouseDown;
    }
    return nullptr;
}

void SimulatedEvents::deliver(KeyStroke keyStroke, std::optional<ProcessIdentifier> processIdentifier) {
    posted_.push_back({keyStroke, processIdentifier, scheduler_.now()});
    reactor_.pressKey(keyStroke, processIdentifier);
}

}  // namespace lomaris::simulated
