#pragma once

#include "platform/linux/x11/keyboard/key_press_plan.h"
#include "platform/linux/x11/x11_connection.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace lomaris {

// Requests of the extensions XKEYBOARD, XInputExtension and XTEST. They are built here and sent with libxcb alone: many
// desktops lack the libxcb libraries of these extensions, and the header of libxcb-xkb is not valid C++. Before a
// request of an extension is sent, `prepareInputExtension` must have returned true for it. Main thread.

/// A request that was sent, whose reply has not been received.
struct KeyboardRequest {
    unsigned int sequence = 0;
};

enum class InputExtension : std::uint8_t { xkb, xInput, xTest };

/// Requests the data of an extension and negotiates its version. Returns true if the server supports it. Blocks until
/// the server replies, or for the timeout of the connection.
[[nodiscard]] bool prepareInputExtension(X11Connection& connection, InputExtension extension);

/// The device number of the session's keyboard (XkbUseCoreKbd).
inline constexpr InputDevice sessionKeyboard = 0x0100;

/// XkbGetState of the session's keyboard.
[[nodiscard]] KeyboardRequest requestKeyboardState(X11Connection& connection);
/// nullopt if the request failed.
[[nodiscard]] std::optional<KeyboardState> receiveKeyboardState(X11Connection& connection, KeyboardRequest request);

/// XkbGetMap of a device.
[[nodiscard]] KeyboardRequest requestKeyboardMap(X11Connection& connection, InputDevice device);
/// nullopt if the request failed or the reply is malformed.
[[nodiscard]] std::optional<KeyboardMap> receiveKeyboardMap(X11Connection& connection, KeyboardRequest request);

/// The slave keyboards of the session's master keyboard (XInput 2).
struct InputDevices {
    /// The XTEST device, to which synthetic key events of programs belong.
    InputDevice programs = 0;
    std::vector<InputDevice> user;
};

/// XIQueryDevice of all devices.
[[nodiscard]] KeyboardRequest requestInputDevices(X11Connection& connection);
/// nullopt if the request failed or there is no XTEST device.
[[nodiscard]] std::optional<InputDevices> receiveInputDevices(X11Connection& connection, KeyboardRequest request);

/// QueryDeviceState of one device.
[[nodiscard]] KeyboardRequest requestPressedKeys(X11Connection& connection, InputDevice device);
/// No keys if the request failed.
[[nodiscard]] PressedKeys receivePressedKeys(X11Connection& connection, KeyboardRequest request);

/// Converts a bit vector with one bit for each keycode, as in QueryKeymap and QueryDeviceState.
[[nodiscard]] PressedKeys pressedKeysFrom(std::span<const std::uint8_t, 32> bits);

/// Sends a step: XTestFakeInput or XkbLatchLockState. These requests have no reply.
void sendKeyStep(X11Connection& connection, const KeyStep& step);

}  // namespace lomaris
