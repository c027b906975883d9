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

// libxcb uses the addresses of these objects as keys for the data of the extensions.
xcb_extension_t xkbExtension{"XKEYBOARD", 0};
xcb_extension_t xInputExtension{"XInputExtension", 0};
xcb_extension_t xTestExtension{"XTEST", 0};

enum class Answer : bool { none, expected };

/// Sends a request of an extension with this minor opcode.
template <typename Request>
KeyboardRequest send(X11Connection& connection, xcb_extension_t& extension, std::uint8_t number, Answer answer,
                     Request request) {
    static_assert(std::is_trivially_copyable_v<Request> && sizeof(Request) % 4 == 0);
    // libxcb uses the two elements before the first part, and requires one for the padding, which is empty.
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

/// A copy of the item at offset `place`. nullopt if there are too few bytes.
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

bool useXkb(X11Connection& connection) {
    const auto version = receive<wire::XkbUseExtensionReply>(
        connection,
        send(connection, xkbExtension, wire::opcode::xkbUseExtension, Answer::expected, wire::XkbUseExtension{}));
    return version && version->supported != 0;
}

bool queryXInputVersion(X11Connection& connection) {
    return connection.wait<xcb_generic_reply_t>(send(connection, xInputExtension, wire::opcode::xiQueryVersion,
                                                     Answer::expected, wire::XIQueryVersion{})) != nullptr;
}

bool getXTestVersion(X11Connection& connection) {
    return connection.wait<xcb_generic_reply_t>(send(connection, xTestExtension, wire::opcode::xTestGetVersion,
                                                     Answer::expected, wire::XTestGetVersion{})) != nullptr;
}

xcb_extension_t& extensionOf(InputExtension extension) {
    switch (extension) {
        case InputExtension::xkb:
            return xkbExtension;
        case InputExtension::xInput:
            return xInputExtension;
        case InputExtension::xTest:
            break;
    }
    return xTestExtension;
}

struct NamedDevice {
    wire::XIDeviceInfo info;
    std::string_view name;
};

/// The devices of a reply, up to the first malformed one.
std::vector<NamedDevice> namedDevicesOf(std::span<const std::byte> bytes) {
    std::vector<NamedDevice> devices;
    const auto head = itemAt<wire::XIQueryDeviceReply>(bytes, 0);
    std::size_t place = sizeof(wire::XIQueryDeviceReply);
    for (unsigned index = 0; head && index < head->numDevices; ++index) {
        const auto info = itemAt<wire::XIDeviceInfo>(bytes, place);
        if (!info || bytes.size() - place - sizeof *info < info->nameLen) {
            return devices;
        }
        place += sizeof *info;
        devices.push_back({*info, {reinterpret_cast<const char*>(bytes.data() + place), info->nameLen}});
        place += (info->nameLen + std::size_t{3}) / 4 * 4;
        for (unsigned number = 0; number < info->numClasses; ++number) {
            const auto deviceClass = itemAt<wire::XIDeviceClass>(bytes, place);
            if (!deviceClass) {
                return devices;
            }
            place += std::size_t{deviceClass->length} * 4;
        }
    }
    return devices;
}

void sendMove(X11Connection& connection, const KeyMove& move) {
    const bool isDown = move.direction == KeyMove::Direction::down;
    wire::XTestFakeInput input;
    input.detail = move.keycode;
    if (move.userKeyboard) {
        const xcb_query_extension_reply_t* const devices =
            connection.xcb().get_extension_data(connection.handle(), &xInputExtension);
        if (devices == nullptr) {
            return;
        }
        input.type = static_cast<std::uint8_t>(devices->first_event + (isDown ? 1 : 2));
        input.deviceId = static_cast<std::uint8_t>(*move.userKeyboard);
    } else {
        input.type = isDown ? XCB_KEY_PRESS : XCB_KEY_RELEASE;
    }
    send(connection, xTestExtension, wire::opcode::xTestFakeInput, Answer::none, input);
}

void sendLocks(X11Connection& connection, const LockChange& change) {
    wire::XkbLatchLockState request;
    request.affectModLocks = change.affected;
    request.modLocks = change.locked;
    request.lockGroup = change.lockedGroup ? 1 : 0;
    request.groupLock = change.lockedGroup.value_or(0);
    request.affectModLatches = 0xff;
    request.latchGroup = 1;
    send(connection, xkbExtension, wire::opcode::xkbLatchLockState, Answer::none, request);
}

}  // namespace

bool prepareInputExtension(X11Connection& connection, InputExtension extension) {
    xcb_extension_t& data = extensionOf(extension);
    if (!connection.hasExtension(data.name) || !connection.prepareExtension(&data)) {
        return false;
    }
    switch (extension) {
        case InputExtension::xkb:
            return useXkb(connection);
        case InputExtension::xInput:
            return queryXInputVersion(connection);
        case InputExtension::xTest:
            return getXTestVersion(connection);
    }
    return false;
}

KeyboardRequest requestKeyboardState(X11Connection& connection) {
    return send(connection, xkbExtension, wire::opcode::xkbGetState, Answer::expected, wire::XkbGetState{});
}

std::optional<KeyboardState> receiveKeyboardState(X11Connection& connection, KeyboardRequest request) {
    const auto reply = receive<wire::XkbGetStateReply>(connection, request);
    if (!reply) {
        return std::nullopt;
    }
    return KeyboardState{
        .baseModifiers = reply->baseMods,
        .latchedModifiers = reply->latchedMods,
        .lockedModifiers = reply->lockedMods,
        .group = reply->group,
        .baseGroup = reply->baseGroup,
        .latchedGroup = reply->latchedGroup,
        .lockedGroup = reply->lockedGroup,
    };
}

KeyboardRequest requestKeyboardMap(X11Connection& connection, InputDevice device) {
    wire::XkbGetMap request;
    request.deviceSpec = device;
    return send(connection, xkbExtension, wire::opcode::xkbGetMap, Answer::expected, request);
}

std::optional<KeyboardMap> receiveKeyboardMap(X11Connection& connection, KeyboardRequest request) {
    const auto reply = connection.wait<xcb_generic_reply_t>(request);
    return reply ? KeyboardMap::fromReply(bytesOf(reply)) : std::nullopt;
}

KeyboardRequest requestInputDevices(X11Connection& connection) {
    return send(connection, xInputExtension, wire::opcode::xiQueryDevice, Answer::expected, wire::XIQueryDevice{});
}

std::optional<InputDevices> receiveInputDevices(X11Connection& connection, KeyboardRequest request) {
    constexpr std::uint16_t slaveKeyboard = 4;
    constexpr std::string_view nameOfProgramsKeyboard = " XTEST keyboard";
    const auto reply = connection.wait<xcb_generic_reply_t>(request);
    if (!reply) {
        return std::nullopt;
    }
    const std::vector<NamedDevice> devices = namedDevicesOf(bytesOf(reply));
    const NamedDevice* programs = nullptr;
    for (const NamedDevice& device : devices) {
        // With several master keyboards there is one for each; the first belongs to that of the session.
        if (programs == nullptr && device.info.use == slaveKeyboard && device.name.ends_with(nameOfProgramsKeyboard)) {
            programs = &device;
        }
    }
    if (programs == nullptr) {
        return std::nullopt;
    }
    InputDevices result{.programs = programs->info.deviceId, .user = {}};
    for (const NamedDevice& device : devices) {
        if (device.info.use == slaveKeyboard && device.info.attachment == programs->info.attachment &&
            &device != programs) {
            result.user.push_back(device.info.deviceId);
        }
    }
    return result;
}

KeyboardRequest requestPressedKeys(X11Connection& connection, InputDevice device) {
    wire::QueryDeviceState request;
    request.deviceId = static_cast<std::uint8_t>(device);
    return send(connection, xInputExtension, wire::opcode::queryDeviceState, Answer::expected, request);
}

PressedKeys receivePressedKeys(X11Connection& connection, KeyboardRequest request) {
    constexpr std::uint8_t keyClass = 0;
    const auto reply = connection.wait<xcb_generic_reply_t>(request);
    if (!reply) {
        return {};
    }
    const std::span<const std::byte> bytes = bytesOf(reply);
    const auto head = itemAt<wire::QueryDeviceStateReply>(bytes, 0);
    std::size_t place = sizeof(wire::QueryDeviceStateReply);
    for (unsigned index = 0; head && index < head->numClasses && place + 1 < bytes.size(); ++index) {
        if (std::to_integer<std::uint8_t>(bytes[place]) == keyClass) {
            const auto keys = itemAt<wire::KeyState>(bytes, place);
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
