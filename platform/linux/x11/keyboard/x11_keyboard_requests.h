#pragma once

#include "platform/linux/x11/keyboard/key_press_plan.h"
#include "platform/linux/x11/x11_connection.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace lomaris {

// Requests of the extensions for keyboards, for input devices and for synthetic input. They are put together here and
// sent through the X protocol library alone: the libraries of these extensions are missing on many desktops, and the
// header of one of them is no C++. `prepare` must have answered yes for the extension before its requests are sent.

/// A request that was sent and not waited for.
struct KeyboardRequest {
    unsigned int sequence = 0;
};

enum class InputExtension : std::uint8_t { keyboard, devices, syntheticInput };

/// Learns about an extension and tells the server which version is spoken; whether it is there to use.
[[nodiscard]] bool prepareInputExtension(X11Connection& connection, InputExtension extension);

/// The session's own keyboard, where a device is asked for.
inline constexpr InputDevice sessionKeyboard = 0x0100;

[[nodiscard]] KeyboardRequest requestKeyboardState(X11Connection& connection);
[[nodiscard]] std::optional<KeyboardState> receiveKeyboardState(X11Connection& connection, KeyboardRequest request);

[[nodiscard]] KeyboardRequest requestKeyboardMap(X11Connection& connection, InputDevice device);
[[nodiscard]] std::optional<KeyboardMap> receiveKeyboardMap(X11Connection& connection, KeyboardRequest request);

/// The devices that make up the session's keyboard.
struct InputDevices {
    /// Through which the keys of programs arrive.
    InputDevice programs = 0;
    std::vector<InputDevice> user;
};

[[nodiscard]] KeyboardRequest requestInputDevices(X11Connection& connection);
/// Nothing where the server did not answer or has no keyboard for programs.
[[nodiscard]] std::optional<InputDevices> receiveInputDevices(X11Connection& connection, KeyboardRequest request);

/// Asks which keys of one device are down.
[[nodiscard]] KeyboardRequest requestPressedKeys(X11Connection& connection, InputDevice device);
/// None where the device is gone.
[[nodiscard]] PressedKeys receivePressedKeys(X11Connection& connection, KeyboardRequest request);

/// The keys that are down, from one bit for each.
[[nodiscard]] PressedKeys pressedKeysFrom(std::span<const std::uint8_t, 32> bits);

/// Sends a step; it has no answer.
void sendKeyStep(X11Connection& connection, const KeyStep& step);

}  // namespace lomaris
