#include "tests/x11/clipboard_peer.h"

#include <poll.h>

#include <chrono>
#include <cstring>
#include <stdexcept>

namespace lomaris::test {

namespace {

template <typename Reply>
std::unique_ptr<Reply, FreeEvent> owned(Reply* reply) {
    if (reply == nullptr) {
        throw std::runtime_error("the X server did not answer another program");
    }
    return std::unique_ptr<Reply, FreeEvent>(reply);
}

}  // namespace

ClipboardPeer::ClipboardPeer() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
        xcb_disconnect(connection_);
        throw std::runtime_error("no X server for another program");
    }
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    window_ = xcb_generate_id(connection_);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
}

ClipboardPeer::~ClipboardPeer() { xcb_disconnect(connection_); }

xcb_atom_t ClipboardPeer::atom(const std::string& name) {
    const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    return owned(xcb_intern_atom_reply(connection_, cookie, nullptr))->atom;
}

std::string ClipboardPeer::name(xcb_atom_t atom) {
    if (atom == XCB_ATOM_NONE) {
        return "";
    }
    const auto reply = owned(xcb_get_atom_name_reply(connection_, xcb_get_atom_name(connection_, atom), nullptr));
    return {xcb_get_atom_name_name(reply.get()), static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

std::string ClipboardPeer::atomList(const std::vector<std::string>& names) {
    std::vector<xcb_intern_atom_cookie_t> cookies;
    for (const std::string& name : names) {
        cookies.push_back(xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()));
    }
    std::string list;
    for (const auto cookie : cookies) {
        const xcb_atom_t atom = owned(xcb_intern_atom_reply(connection_, cookie, nullptr))->atom;
        list.append(reinterpret_cast<const char*>(&atom), sizeof atom);
    }
    return list;
}

std::vector<std::string> ClipboardPeer::namesInList(const std::string& list) {
    std::vector<std::string> names;
    for (std::size_t offset = 0; offset + sizeof(xcb_atom_t) <= list.size(); offset += sizeof(xcb_atom_t)) {
        xcb_atom_t atom = XCB_ATOM_NONE;
        std::memcpy(&atom, list.data() + offset, sizeof atom);
        names.push_back(name(atom));
    }
    return names;
}

xcb_timestamp_t ClipboardPeer::time() {
    const xcb_atom_t clock = atom("TEST_CLOCK");
    setProperty(window_, clock, {"INTEGER", 8, ""});
    const PeerEvent event = waitFor([clock](const xcb_generic_event_t& candidate) {
        return candidate.response_type == XCB_PROPERTY_NOTIFY &&
               reinterpret_cast<const xcb_property_notify_event_t&>(candidate).atom == clock;
    });
    if (!event) {
        throw std::runtime_error("the X server tells no time");
    }
    return reinterpret_cast<const xcb_property_notify_event_t&>(*event).time;
}

xcb_window_t ClipboardPeer::owner() {
    const auto cookie = xcb_get_selection_owner(connection_, atom("CLIPBOARD"));
    return owned(xcb_get_selection_owner_reply(connection_, cookie, nullptr))->owner;
}

void ClipboardPeer::setProperty(xcb_window_t window, xcb_atom_t property, const PropertyValue& value) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, atom(value.type), value.format,
                        static_cast<std::uint32_t>(value.bytes.size() / (value.format / 8U)), value.bytes.data());
}

PropertyValue ClipboardPeer::takeProperty(xcb_atom_t property) {
    constexpr std::uint32_t everything = 0x1fffffff;
    const auto cookie = xcb_get_property(connection_, 1, window_, property, XCB_GET_PROPERTY_TYPE_ANY, 0, everything);
    const auto reply = owned(xcb_get_property_reply(connection_, cookie, nullptr));
    return {name(reply->type), reply->format,
            std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                        static_cast<std::size_t>(xcb_get_property_value_length(reply.get())))};
}

void ClipboardPeer::settle() {
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

PeerEvent ClipboardPeer::waitFor(const std::function<bool(const xcb_generic_event_t&)>& isWanted) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    xcb_flush(connection_);
    while (std::chrono::steady_clock::now() < end && xcb_connection_has_error(connection_) == 0) {
        while (PeerEvent event{xcb_poll_for_event(connection_)}) {
            if (isWanted(*event)) {
                return event;
            }
        }
        pollfd descriptors{.fd = descriptor(), .events = POLLIN, .revents = 0};
        poll(&descriptors, 1, 100);
    }
    return nullptr;
}

}  // namespace lomaris::test
