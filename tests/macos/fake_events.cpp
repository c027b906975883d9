#include "tests/macos/fake_events.h"

#include "tests/macos/fake_shielded_call.h"

#include <sstream>
#include <stdexcept>

using lomaris::test::fakeCrash;
using lomaris::test::FakeEvents;
using lomaris::test::FakeFaults;
using lomaris::test::FakeObject;
using lomaris::test::FakeType;
using lomaris::test::isAlive;
using lomaris::test::objectAt;

struct __CGEventSource final : FakeObject {
    explicit __CGEventSource(CGEventSourceStateID reflected) : FakeObject(FakeType::eventSource), state(reflected) {}

    CGEventSourceStateID state;
};

struct __CGEvent final : FakeObject {
    __CGEvent(CGEventSourceRef from, CGKeyCode code, bool isDown)
        : FakeObject(FakeType::event), source(from), keyCode(code), keyDown(isDown) {}

    /// Borrowed: the code that creates events keeps their source.
    CGEventSourceRef source;
    CGKeyCode keyCode;
    bool keyDown;
    /// The modifier flags of keys that the user holds down when the event is created.
    CGEventFlags flags = 0x10100;
};

namespace {

FakeEvents* currentEvents = nullptr;

__CGEvent& eventAt(CGEventRef event) {
    const FakeObject& object = objectAt(event);
    if (object.type != FakeType::event) {
        fakeCrash("something else was used as an event");
    }
    return *event;
}

/// Called first by every function.
void enter() {
    lomaris::test::fake_shield::leaveTemporary();
    if (FakeEvents::current().throws) {
        throw std::runtime_error("an exception of the platform");
    }
}

std::string describe(const __CGEvent& event) {
    std::ostringstream text;
    text << "key " << event.keyCode << (event.keyDown ? " down" : " up");
    return text.str();
}

void post(CGEventRef event, const std::string& destination) {
    enter();
    const __CGEvent& posted = eventAt(event);
    std::ostringstream text;
    text << describe(posted) << " flags " << std::hex << posted.flags << " to " << destination;
    if (!isAlive(posted.source)) {
        text << " from a source that is gone";
    }
    FakeEvents::current().posted.push_back(text.str());
}

}  // namespace

bool CGPreflightPostEventAccess() {
    enter();
    return FakeEvents::current().mayPost;
}

bool CGRequestPostEventAccess() {
    enter();
    FakeEvents& events = FakeEvents::current();
    if (!events.mayPost) {
        ++events.requestCount;
        events.mayPost = events.userGrants;
    }
    return events.mayPost;
}

CGEventSourceRef CGEventSourceCreate(CGEventSourceStateID state) {
    enter();
    if (FakeFaults::strikes()) {
        return nullptr;
    }
    FakeEvents::current().made.push_back("source " + std::to_string(state));
    return new __CGEventSource(state);
}

CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode virtualKey, bool keyDown) {
    enter();
    if (FakeFaults::strikes()) {
        return nullptr;
    }
    static_cast<void>(objectAt(source));
    auto* const event = new __CGEvent(source, virtualKey, keyDown);
    FakeEvents::current().made.push_back(describe(*event) + " from source " + std::to_string(source->state));
    return event;
}

void CGEventSetFlags(CGEventRef event, CGEventFlags flags) {
    enter();
    eventAt(event).flags = flags;
}

void CGEventPost(CGEventTapLocation tap, CGEventRef event) {
    post(event, "tap " + std::to_string(tap));
    if (eventAt(event).keyDown) {
        ++FakeEvents::current().counters[{kCGEventSourceStateCombinedSessionState, kCGEventKeyDown}];
    }
}

void CGEventPostToPid(pid_t pid, CGEventRef event) { post(event, "process " + std::to_string(pid)); }

uint32_t CGEventSourceCounterForEventType(CGEventSourceStateID state, CGEventType type) {
    enter();
    return FakeEvents::current().counters[{state, type}];
}

namespace lomaris::test {

FakeEvents::FakeEvents() {
    if (currentEvents != nullptr) {
        fakeCrash("there is another double of the event services");
    }
    currentEvents = this;
}

FakeEvents::~FakeEvents() { currentEvents = nullptr; }

FakeEvents& FakeEvents::current() {
    if (currentEvents == nullptr) {
        fakeCrash("there is no double of the event services");
    }
    return *currentEvents;
}

}  // namespace lomaris::test
