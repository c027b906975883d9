#include "platform/linux/x11/keyboard/linux_events.h"

#include "platform/linux/x11/keyboard/key_target.h"

namespace lomaris {

using applications::EditingKeys;

namespace {

class LinuxKeyStrokeEvents final : public KeyStrokeEvents {
public:
    explicit LinuxKeyStrokeEvents(PlannedStroke stroke) : stroke_(stroke) {}

    [[nodiscard]] const PlannedStroke& stroke() const { return stroke_; }

private:
    PlannedStroke stroke_;
};

const PlannedStroke& strokeOf(const KeyStrokeEvents& events) {
    return static_cast<const LinuxKeyStrokeEvents&>(events).stroke();
}

}  // namespace

bool LinuxEvents::preflightPostEventAccess() { return poster_.isReady(); }

// X11 has no permission to request: every client of the display may post events.
bool LinuxEvents::requestPostEventAccess() { return preflightPostEventAccess(); }

std::unique_ptr<KeyStrokeEvents> LinuxEvents::createKeyStroke(KeyStroke keyStroke) {
    // A stroke that has no keys in an ordinary application has none in any other.
    if (!poster_.isReady() || !chooseKeys(keyStroke, EditingKeys::control)) {
        return nullptr;
    }
    const auto receiver = sessionKeyReceiver(connection_);
    const EditingKeys keys = editingKeysOf(receiver, isTerminalFocused_);
    const auto wish = chooseKeys(keyStroke, keys);
    if (!wish || !poster_.canPress(*wish)) {
        return nullptr;
    }
    return std::make_unique<LinuxKeyStrokeEvents>(PlannedStroke{keyStroke, receiver, keys});
}

void LinuxEvents::postToSession(const KeyStrokeEvents& events) {
    if (!poster_.isReady()) {
        return;
    }
    const auto receiver = sessionKeyReceiver(connection_);
    const auto wish = keysStillRight(strokeOf(events), receiver, isTerminalFocused_);
    if (!wish) {
        return;
    }
    // No application can reply while the server is grabbed, so only the X server may be queried here.
    poster_.press(*wish, [&] { return sessionKeyReceiver(connection_) == receiver; });
}

void LinuxEvents::postToProcess(const KeyStrokeEvents& events, ProcessIdentifier processIdentifier) {
    if (!poster_.isReady()) {
        return;
    }
    const auto window = keyTargetOf(connection_, processIdentifier);
    if (!window) {
        return;
    }
    const EditingKeys keys = editingKeysOf(keyReceiverAround(connection_, *window), isTerminalFocused_);
    if (const auto wish = chooseKeys(strokeOf(events).keyStroke, keys)) {
        poster_.sendTo(*window, *wish);
    }
}

std::uint32_t LinuxEvents::inputCounter(InputEventType /*type*/) { return inputClock_.timeOfLastInput().value_or(0); }

}  // namespace lomaris
