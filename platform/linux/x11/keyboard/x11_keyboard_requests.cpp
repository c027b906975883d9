#include "platform/linux/x11/keyboard/x11_keyboard_requests.h"

#include "platform/linux/x11/keyboard/x11_keyboard_wire.h"

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
    const auto version = receive<wire::UseKeyboardExtensionReply>(
        connection, send(connection, keyboardExtension, wire::operation::useKeyboard, Answer::expected,
                         wire::UseKeyboardExtension{}));
    return version && version->isSupported != 0;
}

bool prepareDevices(X11Connection& connection) {
    return connection.wait<xcb_generic_reply_t>(send(connection, devicesExtension, wire::operation::queryDevicesVersion,
                                                     Answer::expected, wire::QueryDevicesVersion{})) != nullptr;
}

bool prepareSyntheticInput(X11Connection& connection) {
    return connection.wait<xcb_generic_reply_t>(send(connection, syntheticInputExtension,
                                                     wire::operation::getSyntheticInputVersion, Answer::expected,
                                                     wire::QuerySyntheticInputVersion{})) != nullptr;
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
    wire::DeviceEntry entry;
    std::string_view name;
};

/// The devices of a reply, up to the first that does not fit.
std::vector<NamedDevice> namedDevicesOf(std::span<const std::byte> bytes) {
    std::vector<NamedDevice> devices;
    const auto head = itemAt<wire::DevicesReply>(bytes, 0);
    std::size_t place = sizeof(wire::DevicesReply);
    for (unsigned index = 0; head && index < head->count; ++index) {
        const auto entry = itemAt<wire::DeviceEntry>(bytes, place);
        if (!entry || bytes.size() - place - sizeof *entry < entry->nameLength) {
            return devices;
        }
        place += sizeof *entry;
        devices.push_back({*entry, {reinterpret_cast<const char*>(bytes.data() + place), entry->nameLength}});
        place += (entry->nameLength + std::size_t{3}) / 4 * 4;
        for (unsigned number = 0; number < entry->classCount; ++number) {
            const auto classHead = itemAt<wire::DeviceClassHead>(bytes, place);
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
    wire::FakeInput input;
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
    send(connection, syntheticInputExtension, wire::operation::fakeInput, Answer::none, input);
}

void sendLocks(X11Connection& connection, const LockChange& change) {
    wire::ChangeLocks request;
    request.affectedLocks = change.affected;
    request.locks = change.locked;
    request.locksGroup = change.lockedGroup ? 1 : 0;
    request.lockedGroup = change.lockedGroup.value_or(0);
    request.affectedLatches = 0xff;
    request.latchesGroup = 1;
    send(connection, keyboardExtension, wire::operation::changeLocks, Answer::none, request);
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
    return send(connection, keyboardExtension, wire::operation::getKeyboardState, Answer::expected,
                wire::GetKeyboardState{});
}

std::optional<KeyboardState> receiveKeyboardState(X11Connection& connection, KeyboardRequest request) {
    const auto reply = receive<wire::KeyboardStateReply>(connection, request);
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
    wire::GetKeyboardMap request;
    request.device = device;
    return send(connection, keyboardExtension, wire::operation::getKeyboardMap, Answer::expected, request);
}

std::optional<KeyboardMap> receiveKeyboardMap(X11Connection& connection, KeyboardRequest request) {
    const auto reply = connection.wait<xcb_generic_reply_t>(request);
    return reply ? KeyboardMap::fromReply(bytesOf(reply)) : std::nullopt;
}

KeyboardRequest requestInputDevices(X11Connection& connection) {
    return send(connection, devicesExtension, wire::operation::queryDevices, Answer::expected, wire::QueryDevices{});
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
    wire::QueryDeviceState request;
    request.device = static_cast<std::uint8_t>(device);
    return send(connection, devicesExtension, wire::operation::queryDeviceState, Answer::expected, request);
}

PressedKeys receivePressedKeys(X11Connection& connection, KeyboardRequest request) {
    constexpr std::uint8_t keyClass = 0;
    const auto reply = connection.wait<xcb_generic_reply_t>(request);
    if (!reply) {
        return {};
    }
    const std::span<const std::byte> bytes = bytesOf(reply);
    const auto head = itemAt<wire::DeviceStateReply>(bytes, 0);
    std::size_t place = sizeof(wire::DeviceStateReply);
    for (unsigned index = 0; head && index < head->classCount && place + 1 < bytes.size(); ++index) {
        if (std::to_integer<std::uint8_t>(bytes[place]) == keyClass) {
            const auto keys = itemAt<wire::KeyClassState>(bytes, place);
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
