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
    appendBoolean(journal_.line(call), isGranted_);
    return isGranted_;
}

bool SimulatedEvents::requestPostEventAccess() {
    if (!journal_.admits()) {
        return false;
    }
    const std::size_t call = journal_.begin("requestPostEventAccess() -> ");
    isGranted_ = isGranted_ || requestAnswer_;
    appendBoolean(journal_.line(call), isGranted_);
    return isGranted_;
}

std::unique_ptr<KeyStrokeEvents> SimulatedEvents::createKeyStroke(KeyStroke keyStroke) {
    if (!journal_.admits()) {
        return nullptr;
    }
    std::string& line = journal_.line(journal_.begin("createKeyStroke("));
    appendKeyStroke(line, keyStroke);
    if (failures_ > 0) {
        --failures_;
        line += ") -> nothing";
        return nullptr;
    }
    line += ") -> events";
    return std::make_unique<SimulatedKeyStrokeEvents>(keyStroke);
}

void SimulatedEvents::postToSession(const KeyStrokeEvents& events) {
    if (!journal_.admits()) {
        return;
    }
    std::string& line = journal_.line(journal_.begin("postToSession("));
    appendKeyStroke(line, keyStrokeOf(events));
    line += ')';
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
    deliver(keyStrokeOf(events), processIdentifier);
}

std::uint32_t SimulatedEvents::inputCounter(InputEventType type) {
    if (!journal_.admits()) {
        return 0;
    }
    std::string& line = journal_.line(journal_.begin("inputCounter("));
    appendInteger(line, static_cast<std::int64_t>(type));
    line += ") -> ";
    const std::uint32_t* counter = counterOf(type);
    const std::uint32_t answer = counter == nullptr ? 0 : *counter;
    appendInteger(line, answer);
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
