#include "platform/linux/x11_keyboard_requests.h"

#include <sys/uio.h>

#include <array>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>

namespace lomaris {

namespace {

// The protocol library keeps the number of an extension under the address of these.
xcb_extension_t keyboardExtension{"XKEYBOARD", 0};
xcb_extension_t devicesExtension{"XInputExtension", 0};
xcb_extension_t syntheticInputExtension{"XTEST", 0};

/// The numbers of the requests within their extensions.
namespace operation {
constexpr std::uint8_t useKeyboard = 0;
constexpr std::uint8_t getKeyboardState = 4;
constexpr std::uint8_t changeLocks = 5;
constexpr std::uint8_t getKeyboardMap = 8;
constexpr std::uint8_t queryDeviceState = 30;
constexpr std::uint8_t queryDevicesVersion = 47;
constexpr std::uint8_t queryDevices = 48;
constexpr std::uint8_t getSyntheticInputVersion = 0;
constexpr std::uint8_t fakeInput = 2;
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

enum class Answer : bool { none, expected };

/// Sends a request with one operation number of an extension.
template <typename Request>
KeyboardRequest send(X11Connection& connection, xcb_extension_t& extension, std::uint8_t number, Answer answer,
                     Request request) {
    static_assert(std::is_trivially_copyable_v<Request> && sizeof(Request) % 4 == 0);
    // The library writes before the first part, and wants one for the padding, of which there is none.
    std::array<iovec, 4> parts{};
    parts[2] = {.iov_base = &request, .iov_len = sizeof request};
    const bool isAnswered = answer == Answer::expected;
    const xcb_protocol_request_t protocol{
        .count = 2, .ext = &extension, .opcode = number, .isvoid = static_cast<std::uint8_t>(isAnswered ? 0 : 1)};
    return {
        connection.xcb().send_request(connection.handle(), isAnswered ? XCB_REQUEST_CHECKED : 0, &parts[2], &protocol)};
}

/// All bytes of a reply of the X server.
template <typename Reply>
std::span<const std::byte> bytesOf(const XReply<Reply>& reply) {
    const std::size_t size = 32 + std::size_t{reply->length} * 4;
    return {reinterpret_cast<const std::byte*>(reply.get()), size};
}

/// A copy of the item at the front of some bytes, or nothing where they are too few.
template <typename Item>
std::optional<Item> itemAt(std::span<const std::byte> bytes, std::size_t place) {
    if (place > bytes.size() || bytes.size() - place < sizeof(Item)) {
        return std::nullopt;
    }
    Item item{};
    std::memcpy(&item, bytes.data() + place, sizeof item);
    return item;
}

template <typename Item>
std::optional<Item> receive(X11Connection& connection, KeyboardRequest request) {
    const auto reply = connection.wait<xcb_generic_reply_t>(request);
    return reply ? itemAt<Item>(bytesOf(reply), 0) : std::nullopt;
}

bool prepareKeyboard(X11Connection& connection) {
    const auto version = receive<UseKeyboardExtensionReply>(
        connection,
        send(connection, keyboardExtension, operation::useKeyboard, Answer::expected, UseKeyboardExtension{}));
    return version && version->isSupported != 0;
}

bool prepareDevices(X11Connection& connection) {
    return connection.wait<xcb_generic_reply_t>(send(connection, devicesExtension, operation::queryDevicesVersion,
                                                     Answer::expected, QueryDevicesVersion{})) != nullptr;
}

bool prepareSyntheticInput(X11Connection& connection) {
    return connection.wait<xcb_generic_reply_t>(send(connection, syntheticInputExtension,
                                                     operation::getSyntheticInputVersion, Answer::expected,
                                                     QuerySyntheticInputVersion{})) != nullptr;
}

xcb_extension_t& extensionOf(InputExtension extension) {
    switch (extension) {
        case InputExtension::keyboard:
            return keyboardExtension;
        case InputExtension::devices:
            return devicesExtension;
        case InputExtension::syntheticInput:
            break;
    }
    return syntheticInputExtension;
}

struct NamedDevice {
    DeviceEntry entry;
    std::string_view name;
};

/// The devices of a reply, up to the first that does not fit.
std::vector<NamedDevice> namedDevicesOf(std::span<const std::byte> bytes) {
    std::vector<NamedDevice> devices;
    const auto head = itemAt<DevicesReply>(bytes, 0);
    std::size_t place = sizeof(DevicesReply);
    for (unsigned index = 0; head && index < head->count; ++index) {
        const auto entry = itemAt<DeviceEntry>(bytes, place);
        if (!entry || bytes.size() - place - sizeof *entry < entry->nameLength) {
            return devices;
        }
        place += sizeof *entry;
        devices.push_back({*entry, {reinterpret_cast<const char*>(bytes.data() + place), entry->nameLength}});
        place += (entry->nameLength + std::size_t{3}) / 4 * 4;
        for (unsigned number = 0; number < entry->classCount; ++number) {
            const auto classHead = itemAt<DeviceClassHead>(bytes, place);
            if (!classHead) {
                return devices;
            }
            place += std::size_t{classHead->lengthInWords} * 4;
        }
    }
    return devices;
}

void sendMove(X11Connection& connection, const KeyMove& move) {
    const bool isDown = move.direction == KeyMove::Direction::down;
    FakeInput input;
    input.keycode = move.keycode;
    if (move.userKeyboard) {
        const xcb_query_extension_reply_t* const devices =
            connection.xcb().get_extension_data(connection.handle(), &devicesExtension);
        if (devices == nullptr) {
            return;
        }
        input.event = static_cast<std::uint8_t>(devices->first_event + (isDown ? 1 : 2));
        input.device = static_cast<std::uint8_t>(*move.userKeyboard);
    } else {
        input.event = isDown ? XCB_KEY_PRESS : XCB_KEY_RELEASE;
    }
    send(connection, syntheticInputExtension, operation::fakeInput, Answer::none, input);
}

void sendLocks(X11Connection& connection, const LockChange& change) {
    ChangeLocks request;
    request.affectedLocks = change.affected;
    request.locks = change.locked;
    request.locksGroup = change.lockedGroup ? 1 : 0;
    request.lockedGroup = change.lockedGroup.value_or(0);
    request.affectedLatches = 0xff;
    request.latchesGroup = 1;
    send(connection, keyboardExtension, operation::changeLocks, Answer::none, request);
}

}  // namespace

bool prepareInputExtension(X11Connection& connection, InputExtension extension) {
    xcb_extension_t& data = extensionOf(extension);
    if (!connection.hasExtension(data.name) || !connection.prepareExtension(&data)) {
        return false;
    }
    switch (extension) {
        case InputExtension::keyboard:
            return prepareKeyboard(connection);
        case InputExtension::devices:
            return prepareDevices(connection);
        case InputExtension::syntheticInput:
            return prepareSyntheticInput(connection);
    }
    return false;
}

KeyboardRequest requestKeyboardState(X11Connection& connection) {
    return send(connection, keyboardExtension, operation::getKeyboardState, Answer::expected, GetKeyboardState{});
}

std::optional<KeyboardState> receiveKeyboardState(X11Connection& connection, KeyboardRequest request) {
    const auto reply = receive<KeyboardStateReply>(connection, request);
    if (!reply) {
        return std::nullopt;
    }
    return KeyboardState{
        .heldModifiers = reply->heldModifiers,
        .latchedModifiers = reply->latchedModifiers,
        .lockedModifiers = reply->lockedModifiers,
        .group = reply->group,
        .heldGroup = reply->heldGroup,
        .latchedGroup = reply->latchedGroup,
        .lockedGroup = reply->lockedGroup,
    };
}

KeyboardRequest requestKeyboardMap(X11Connection& connection, InputDevice device) {
    GetKeyboardMap request;
    request.device = device;
    return send(connection, keyboardExtension, operation::getKeyboardMap, Answer::expected, request);
}

std::optional<KeyboardMap> receiveKeyboardMap(X11Connection& connection, KeyboardRequest request) {
    const auto reply = connection.wait<xcb_generic_reply_t>(request);
    return reply ? KeyboardMap::fromReply(bytesOf(reply)) : std::nullopt;
}

KeyboardRequest requestInputDevices(X11Connection& connection) {
    return send(connection, devicesExtension, operation::queryDevices, Answer::expected, QueryDevices{});
}

std::optional<InputDevices> receiveInputDevices(X11Connection& connection, KeyboardRequest request) {
    constexpr std::uint16_t attachedKeyboard = 4;
    constexpr std::string_view nameOfProgramsKeyboard = " XTEST keyboard";
    const auto reply = connection.wait<xcb_generic_reply_t>(request);
    if (!reply) {
        return std::nullopt;
    }
    const std::vector<NamedDevice> devices = namedDevicesOf(bytesOf(reply));
    const NamedDevice* programs = nullptr;
    for (const NamedDevice& device : devices) {
        // There may be one for each of several users at the same screen; the first is that of the session.
        if (programs == nullptr && device.entry.use == attachedKeyboard &&
            device.name.ends_with(nameOfProgramsKeyboard)) {
            programs = &device;
        }
    }
    if (programs == nullptr) {
        return std::nullopt;
    }
    InputDevices result{.programs = programs->entry.identifier, .user = {}};
    for (const NamedDevice& device : devices) {
        if (device.entry.use == attachedKeyboard && device.entry.attachment == programs->entry.attachment &&
            &device != programs) {
            result.user.push_back(device.entry.identifier);
        }
    }
    return result;
}

KeyboardRequest requestPressedKeys(X11Connection& connection, InputDevice device) {
    QueryDeviceState request;
    request.device = static_cast<std::uint8_t>(device);
    return send(connection, devicesExtension, operation::queryDeviceState, Answer::expected, request);
}

PressedKeys receivePressedKeys(X11Connection& connection, KeyboardRequest request) {
    constexpr std::uint8_t keyClass = 0;
    const auto reply = connection.wait<xcb_generic_reply_t>(request);
    if (!reply) {
        return {};
    }
    const std::span<const std::byte> bytes = bytesOf(reply);
    const auto head = itemAt<DeviceStateReply>(bytes, 0);
    std::size_t place = sizeof(DeviceStateReply);
    for (unsigned index = 0; head && index < head->classCount && place + 1 < bytes.size(); ++index) {
        if (std::to_integer<std::uint8_t>(bytes[place]) == keyClass) {
            const auto keys = itemAt<KeyClassState>(bytes, place);
            return keys ? pressedKeysFrom(keys->keys) : PressedKeys();
        }
        place += std::to_integer<std::uint8_t>(bytes[place + 1]);
    }
    return {};
}

PressedKeys pressedKeysFrom(std::span<const std::uint8_t, 32> bits) {
    PressedKeys pressed;
    for (std::size_t key = 0; key < pressed.size(); ++key) {
        pressed[key] = ((unsigned{bits[key / 8]} >> (key % 8)) & 1U) != 0;
    }
    return pressed;
}

void sendKeyStep(X11Connection& connection, const KeyStep& step) {
    if (const auto* const move = std::get_if<KeyMove>(&step)) {
        sendMove(connection, *move);
    } else {
        sendLocks(connection, std::get<LockChange>(step));
    }
}

}  // namespace lomaris
