#pragma once

#include "platform/linux/x11/keyboard/x11_keyboard_requests.h"
#include "platform/linux/x11/x11_connection.h"

#include <functional>
#include <optional>

namespace lomaris {

/// Presses keys through an X server. Main thread; never throws.
///
/// A press is one batch of requests, written to the server at once: it arrives whole or not at all, so that no key
/// stays down when this process or the connection ends in the middle. Modifiers and locks are put back by a second
/// batch; signals that ask the process to end are blocked until then. While the keyboard is looked at, the key pressed
/// and the modifiers put back, no other program can come between (the server is grabbed); the user's own keys can.
class KeyPoster {
public:
    /// `connection` must outlive the poster.
    explicit KeyPoster(X11Connection& connection) : connection_(connection) {}

    /// True if there is an X server with XTEST.
    [[nodiscard]] bool isReady();

    /// True if the current keymap has the keys of this wish.
    [[nodiscard]] bool canPress(KeyWish wish);

    /// Presses and releases the key; returns after the server has done so. Does nothing if the keymap lacks the key, or
    /// if `mayPress` returns false. `mayPress` is called at most once, while the server is grabbed.
    void press(KeyWish wish, const std::function<bool()>& mayPress);

    /// Sends the key events to one window, regardless of the input focus; returns after the server has done so.
    void sendTo(xcb_window_t window, KeyWish wish);

private:
    /// The current state of the keyboard. nullopt if the server lacks XKEYBOARD or a request failed.
    [[nodiscard]] std::optional<KeyboardSnapshot> look();
    [[nodiscard]] std::vector<KeyboardDevice> lookAtUserKeyboards(const KeyboardSnapshot& before);
    void pressWhileGrabbed(KeyWish wish);
    void settle();

    X11Connection& connection_;
    std::optional<bool> isReady_;
    bool hasKeyboardExtension_ = false;
    bool tellsDevicesApart_ = false;
};

}  // namespace lomaris
