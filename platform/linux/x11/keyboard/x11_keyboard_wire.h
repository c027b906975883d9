#pragma once

#include "platform/linux/x11/x11_library.h"

#include <array>
#include <cstdint>

/// Requests and replies of the extensions for keyboards, input devices and synthetic input, byte for byte as the
/// protocols lay them out. Fields are what the protocols call them, padding included.
namespace lomaris::wire {

/// The numbers of the requests within their extensions.
namespace operation {
inline constexpr std::uint8_t useKeyboard = 0;
inline constexpr std::uint8_t getKeyboardState = 4;
inline constexpr std::uint8_t changeLocks = 5;
inline constexpr std::uint8_t getKeyboardMap = 8;
inline constexpr std::uint8_t queryDeviceState = 30;
inline constexpr std::uint8_t queryDevicesVersion = 47;
inline constexpr std::uint8_t queryDevices = 48;
inline constexpr std::uint8_t getSyntheticInputVersion = 0;
inline constexpr std::uint8_t fakeInput = 2;
}  // namespace operation

/// The beginning of every request; the library fills it in.
struct RequestHead {
    std::uint8_t extension = 0;
    std::uint8_t operation = 0;
    std::uint16_t lengthInWords = 0;
};

struct UseKeyboardExtension {
    RequestHead head;
    std::uint16_t major = 1;
    std::uint16_t minor = 0;
};

struct UseKeyboardExtensionReply {
    std::uint8_t type;
    std::uint8_t isSupported;
};

struct QueryDevicesVersion {
    RequestHead head;
    std::uint16_t major = 2;
    std::uint16_t minor = 0;
};

struct QuerySyntheticInputVersion {
    RequestHead head;
    std::uint8_t major = 2;
    std::uint8_t unused = 0;
    std::uint16_t minor = 2;
};

struct GetKeyboardState {
    RequestHead head;
    std::uint16_t device = sessionKeyboard;
    std::uint16_t unused = 0;
};

struct KeyboardStateReply {
    std::array<std::uint8_t, 8> head;
    std::uint8_t modifiers;
    std::uint8_t heldModifiers;
    std::uint8_t latchedModifiers;
    std::uint8_t lockedModifiers;
    std::uint8_t group;
    std::uint8_t lockedGroup;
    std::int16_t heldGroup;
    std::int16_t latchedGroup;
};

struct GetKeyboardMap {
    RequestHead head;
    std::uint16_t device = 0;
    /// Keysyms and the modifier map, of every key.
    std::uint16_t completeParts = (1U << 1U) | (1U << 2U);
    std::array<std::uint8_t, 20> partialParts{};
};

struct ChangeLocks {
    RequestHead head;
    std::uint16_t device = sessionKeyboard;
    std::uint8_t affectedLocks = 0;
    std::uint8_t locks = 0;
    std::uint8_t locksGroup = 0;
    std::uint8_t lockedGroup = 0;
    std::uint8_t affectedLatches = 0;
    std::uint8_t latches = 0;
    std::uint8_t unused = 0;
    std::uint8_t latchesGroup = 0;
    std::int16_t latchedGroup = 0;
};

struct QueryDevices {
    RequestHead head;
    /// 0 stands for all of them.
    std::uint16_t device = 0;
    std::uint16_t unused = 0;
};

struct DevicesReply {
    std::array<std::uint8_t, 8> head;
    std::uint16_t count;
    std::array<std::uint8_t, 22> unused;
};

struct DeviceEntry {
    std::uint16_t identifier;
    std::uint16_t use;
    std::uint16_t attachment;
    std::uint16_t classCount;
    std::uint16_t nameLength;
    std::uint16_t isEnabled;
};

/// What follows the name: its length comes in words, this head included.
struct DeviceClassHead {
    std::uint16_t type;
    std::uint16_t lengthInWords;
};

struct QueryDeviceState {
    RequestHead head;
    std::uint8_t device = 0;
    std::array<std::uint8_t, 3> unused{};
};

struct DeviceStateReply {
    std::array<std::uint8_t, 8> head;
    std::uint8_t classCount;
    std::array<std::uint8_t, 23> unused;
};

struct KeyClassState {
    std::uint8_t type;
    std::uint8_t length;
    std::uint8_t keyCount;
    std::uint8_t unused;
    std::array<std::uint8_t, 32> keys;
};

struct FakeInput {
    RequestHead head;
    std::uint8_t event = 0;
    std::uint8_t keycode = 0;
    std::uint16_t unused1 = 0;
    std::uint32_t delay = 0;
    std::uint32_t root = 0;
    std::array<std::uint8_t, 19> unused2{};
    std::uint8_t device = 0;
};

// The sizes that the protocol gives them.
static_assert(sizeof(ChangeLocks) == 16 && sizeof(GetKeyboardMap) == 28 && sizeof(FakeInput) == 36);

}  // namespace lomaris::wire
