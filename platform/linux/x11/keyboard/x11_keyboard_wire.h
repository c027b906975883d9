#pragma once

#include "platform/linux/x11/keyboard/x11_keyboard_requests.h"

#include <array>
#include <cstdint>

/// Requests and replies of the X11 extensions XKEYBOARD, XInputExtension and XTEST, with the memory layout of the
/// protocols. Types and fields have the names of the protocols, in the spelling of this project.
namespace lomaris::wire {

/// The minor opcodes of the requests.
namespace opcode {
inline constexpr std::uint8_t xkbUseExtension = 0;
inline constexpr std::uint8_t xkbGetState = 4;
inline constexpr std::uint8_t xkbLatchLockState = 5;
inline constexpr std::uint8_t xkbGetMap = 8;
inline constexpr std::uint8_t queryDeviceState = 30;
inline constexpr std::uint8_t xiQueryVersion = 47;
inline constexpr std::uint8_t xiQueryDevice = 48;
inline constexpr std::uint8_t xTestGetVersion = 0;
inline constexpr std::uint8_t xTestFakeInput = 2;
}  // namespace opcode

/// The header of every request. libxcb sets its fields.
struct RequestHead {
    std::uint8_t majorOpcode = 0;
    std::uint8_t minorOpcode = 0;
    /// In units of four bytes.
    std::uint16_t length = 0;
};

struct XkbUseExtension {
    RequestHead head;
    std::uint16_t wantedMajor = 1;
    std::uint16_t wantedMinor = 0;
};

struct XkbUseExtensionReply {
    std::uint8_t type;
    std::uint8_t supported;
};

struct XIQueryVersion {
    RequestHead head;
    std::uint16_t majorVersion = 2;
    std::uint16_t minorVersion = 0;
};

struct XTestGetVersion {
    RequestHead head;
    std::uint8_t majorVersion = 2;
    std::uint8_t unused = 0;
    std::uint16_t minorVersion = 2;
};

struct XkbGetState {
    RequestHead head;
    std::uint16_t deviceSpec = sessionKeyboard;
    std::uint16_t unused = 0;
};

/// The beginning of the reply.
struct XkbGetStateReply {
    std::array<std::uint8_t, 8> head;
    std::uint8_t mods;
    std::uint8_t baseMods;
    std::uint8_t latchedMods;
    std::uint8_t lockedMods;
    std::uint8_t group;
    std::uint8_t lockedGroup;
    std::int16_t baseGroup;
    std::int16_t latchedGroup;
};

struct XkbGetMap {
    RequestHead head;
    std::uint16_t deviceSpec = 0;
    /// Map parts to return completely: KeySyms and ModifierMap.
    std::uint16_t full = (1U << 1U) | (1U << 2U);
    /// Map parts to return for a range of keys: none.
    std::uint16_t partial = 0;
    /// The ranges for `partial`, from firstType to nVModMapKeys.
    std::array<std::uint8_t, 18> ranges{};
};

struct XkbLatchLockState {
    RequestHead head;
    std::uint16_t deviceSpec = sessionKeyboard;
    std::uint8_t affectModLocks = 0;
    std::uint8_t modLocks = 0;
    std::uint8_t lockGroup = 0;
    std::uint8_t groupLock = 0;
    std::uint8_t affectModLatches = 0;
    std::uint8_t modLatches = 0;
    std::uint8_t unused = 0;
    std::uint8_t latchGroup = 0;
    std::int16_t groupLatch = 0;
};

struct XIQueryDevice {
    RequestHead head;
    /// 0: XIAllDevices.
    std::uint16_t deviceId = 0;
    std::uint16_t unused = 0;
};

struct XIQueryDeviceReply {
    std::array<std::uint8_t, 8> head;
    std::uint16_t numDevices;
    std::array<std::uint8_t, 22> unused;
};

/// One device of the reply. Its name follows, padded to a multiple of four bytes, and then its classes.
struct XIDeviceInfo {
    std::uint16_t deviceId;
    std::uint16_t use;
    std::uint16_t attachment;
    std::uint16_t numClasses;
    std::uint16_t nameLen;
    std::uint16_t enabled;
};

/// The beginning of a class of a device.
struct XIDeviceClass {
    std::uint16_t type;
    /// Of the whole class, in units of four bytes.
    std::uint16_t length;
};

struct QueryDeviceState {
    RequestHead head;
    std::uint8_t deviceId = 0;
    std::array<std::uint8_t, 3> unused{};
};

/// The classes of the device follow.
struct QueryDeviceStateReply {
    std::array<std::uint8_t, 8> head;
    std::uint8_t numClasses;
    std::array<std::uint8_t, 23> unused;
};

/// The class KeyClass of that reply.
struct KeyState {
    std::uint8_t classId;
    /// In bytes.
    std::uint8_t length;
    std::uint8_t numKeys;
    std::uint8_t unused;
    /// One bit for each keycode, set if the key is down.
    std::array<std::uint8_t, 32> keys;
};

struct XTestFakeInput {
    RequestHead head;
    /// The type of the event: core, or of XInputExtension if `deviceId` is set.
    std::uint8_t type = 0;
    /// The keycode.
    std::uint8_t detail = 0;
    std::uint16_t unused1 = 0;
    /// The delay in milliseconds.
    std::uint32_t time = 0;
    std::uint32_t root = 0;
    std::array<std::uint8_t, 19> unused2{};
    std::uint8_t deviceId = 0;
};

static_assert(sizeof(XkbLatchLockState) == 16 && sizeof(XkbGetMap) == 28 && sizeof(XTestFakeInput) == 36,
              "the sizes that the protocols define");

}  // namespace lomaris::wire
