#include "platform/linux/x11/x11_properties.h"

#include <cstring>

namespace lomaris {

namespace {

constexpr std::uint32_t longestPropertyInWords = 4096;

/// The items of a property. Empty if the format is another one or `value_len` exceeds the length of the reply.
template <typename Item>
std::vector<Item> itemsOf(X11Connection& connection, const xcb_get_property_reply_t& reply) {
    if (reply.format != sizeof(Item) * 8 || reply.value_len > std::size_t{reply.length} * 4 / sizeof(Item)) {
        return {};
    }
    std::vector<Item> items(reply.value_len);
    if (!items.empty()) {
        std::memcpy(items.data(), connection.xcb().get_property_value(&reply), items.size() * sizeof(Item));
    }
    return items;
}

}  // namespace

PropertyRequest requestProperty(X11Connection& connection, xcb_window_t window, xcb_atom_t property) {
    return connection.xcb().get_property(connection.handle(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0,
                                         longestPropertyInWords);
}

std::optional<std::uint32_t> receiveNumber(X11Connection& connection, PropertyRequest request) {
    const auto reply = connection.wait<xcb_get_property_reply_t>(request);
    if (!reply || reply->type != XCB_ATOM_CARDINAL) {
        return std::nullopt;
    }
    const auto numbers = itemsOf<std::uint32_t>(connection, *reply);
    return numbers.empty() ? std::nullopt : std::optional(numbers.front());
}

std::vector<xcb_window_t> receiveWindows(X11Connection& connection, PropertyRequest request) {
    const auto reply = connection.wait<xcb_get_property_reply_t>(request);
    if (!reply || reply->type != XCB_ATOM_WINDOW) {
        return {};
    }
    return itemsOf<xcb_window_t>(connection, *reply);
}

std::string receiveBytes(X11Connection& connection, PropertyRequest request) {
    const auto reply = connection.wait<xcb_get_property_reply_t>(request);
    if (!reply) {
        return {};
    }
    const auto bytes = itemsOf<char>(connection, *reply);
    return {bytes.begin(), bytes.end()};
}

bool receivePresence(X11Connection& connection, PropertyRequest request) {
    const auto reply = connection.wait<xcb_get_property_reply_t>(request);
    return reply && reply->type != XCB_ATOM_NONE;
}

}  // namespace lomaris
