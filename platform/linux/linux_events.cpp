#include "platform/linux/linux_events.h"

#include "platform/linux/key_codes.h"
#include "platform/linux/key_target.h"

namespace lomaris {

namespace {

class LinuxKeyStrokeEvents final : public KeyStrokeEvents {
public:
    explicit LinuxKeyStrokeEvents(KeyWish wish) : wish_(wish) {}

    [[nodiscard]] KeyWish wish() const { return wish_; }

private:
    KeyWish wish_;
};

KeyWish wishOf(const KeyStrokeEvents& events) { return static_cast<const LinuxKeyStrokeEvents&>(events).wish(); }

std::optional<KeyWish> wishOf(KeyStroke keyStroke) {
    const auto keysym = keysymOfKeyCode(keyStroke.keyCode);
    if (!keysym || (keyStroke.flags & ~commandFlag) != 0) {
        return std::nullopt;
    }
    return KeyWish{.keysym = *keysym, .withControl = (keyStroke.flags & commandFlag) != 0};
}

}  // namespace

bool LinuxEvents::preflightPostEventAccess() { return poster_.isReady(); }

// There is nobody to ask: whoever may use the display may post events.
bool LinuxEvents::requestPostEventAccess() { return preflightPostEventAccess(); }

std::unique_ptr<KeyStrokeEvents> LinuxEvents::createKeyStroke(KeyStroke keyStroke) {
    const auto wish = wishOf(keyStroke);
    if (!wish || !poster_.canPress(*wish)) {
        return nullptr;
    }
    return std::make_unique<LinuxKeyStrokeEvents>(*wish);
}

void LinuxEvents::postToSession(const KeyStrokeEvents& events) { poster_.press(wishOf(events)); }

void LinuxEvents::postToProcess(const KeyStrokeEvents& events, ProcessIdentifier processIdentifier) {
    if (!poster_.isReady()) {
        return;
    }
    if (const auto window = keyTargetOf(connection_, processIdentifier)) {
        poster_.sendTo(*window, wishOf(events));
    }
}

std::uint32_t LinuxEvents::inputCounter(InputEventType /*type*/) { return inputClock_.timeOfLastInput().value_or(0); }

}  // namespace lomaris
