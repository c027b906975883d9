#include "platform/linux/x11/clipboard/clipboard_session.h"

#include "platform/linux/process/descriptor_wait.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <memory>

namespace lomaris {

namespace {

/// A socket that is reported as writable has at least three quarters of its buffer free. With the default buffer size
/// that is more than this.
constexpr std::size_t roomInSocket = std::size_t{96} * 1024;

}  // namespace

bool ClipboardSession::open(Handler handler) {
    if (!connection_.isUsable() || !internNames() || !prepareOwnerChanges()) {
        return false;
    }
    handler_ = std::move(handler);
    // libxcb does not return the descriptor after the connection is lost.
    descriptor_ = xcb().get_file_descriptor(handle());
    // The length in the setup is in units of four bytes, and includes the header of the request.
    const std::size_t longestRequest = std::size_t{xcb().get_setup(handle())->maximum_request_length} * 4;
    constexpr std::size_t head = 1024;
    longestPiece_ = std::min(longestRequest - head, roomInSocket) & ~std::size_t{3};
    window_ = createWindow();
    xcbXfixesFunctions()->select_selection_input(handle(), window_, names_.clipboard,
                                                 XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                                     XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                                     XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    settle();
    return isAlive();
}

bool ClipboardSession::internNames() {
    struct Name {
        std::string_view name;
        xcb_atom_t* atom;
    };
    const std::array<Name, 10> wanted{{
        {"ATOM_PAIR", &names_.atomPair},
        {"CLIPBOARD", &names_.clipboard},
        {"INCR", &names_.incremental},
        {"_LOMARIS_CLIPBOARD_KEEPER", &names_.keeper},
        {"MULTIPLE", &names_.multiple},
        {"_LOMARIS_CLIPBOARD_OPERATION", &names_.operation},
        {"TARGETS", &names_.targets},
        {"TIMESTAMP", &names_.timestamp},
        {"LOMARIS_TRANSFER", &names_.transfer},
        {"LOMARIS_CLOCK", &clockProperty_},
    }};
    std::array<std::string_view, wanted.size()> names;
    std::ranges::transform(wanted, names.begin(), &Name::name);
    const std::vector<xcb_atom_t> atoms = atoms_.atoms(names);
    for (std::size_t index = 0; index < wanted.size(); ++index) {
        *wanted[index].atom = atoms[index];
    }
    return std::ranges::find(atoms, xcb_atom_t{XCB_ATOM_NONE}) == atoms.end();
}

bool ClipboardSession::prepareOwnerChanges() {
    const XcbXfixesFunctions* const fixes = xcbXfixesFunctions();
    if (fixes == nullptr || !connection_.hasExtension("XFIXES") || !connection_.prepareExtension(fixes->id)) {
        return false;
    }
    const xcb_query_extension_reply_t* const extension = xcb().get_extension_data(handle(), fixes->id);
    if (extension == nullptr || extension->present == 0) {
        return false;
    }
    firstFixesEvent_ = extension->first_event;
    const auto version = connection_.wait<xcb_xfixes_query_version_reply_t>(fixes->query_version(handle(), 1, 0));
    return version != nullptr;
}

bool ClipboardSession::isAlive() {
    return !isGivenUp_ && connection_.isUsable() && xcb().connection_has_error(handle()) == 0;
}

xcb_window_t ClipboardSession::createWindow() {
    const xcb_window_t window = xcb().generate_id(handle());
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb().create_window(handle(), XCB_COPY_FROM_PARENT, window, connection_.root(), -1, -1, 1, 1, 0,
                        XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    return window;
}

bool ClipboardSession::isOwnWindow(xcb_window_t window) const {
    return clientOf(window) == xcb().get_setup(handle())->resource_id_base;
}

std::uint32_t ClipboardSession::clientOf(xcb_window_t window) const {
    return window & ~xcb().get_setup(handle())->resource_id_mask;
}

bool ClipboardSession::isOwnerChange(const xcb_generic_event_t& event) const {
    return event.response_type == firstFixesEvent_ + XCB_XFIXES_SELECTION_NOTIFY;
}

void ClipboardSession::pump() {
    while (const auto event = XReply<xcb_generic_event_t>(xcb().poll_for_event(handle()))) {
        handle(*event);
    }
}

void ClipboardSession::handle(const xcb_generic_event_t& event) {
    if (event.response_type == XCB_PROPERTY_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (change.window == window_ && change.atom == clockProperty_) {
            clockReading_ = change.time;
            return;
        }
    }
    handler_(event);
}

void ClipboardSession::settle() {
    // The server sends all earlier events before the reply.
    static_cast<void>(connection_.wait<xcb_get_input_focus_reply_t>(xcb().get_input_focus(handle())));
    pump();
    while (flush()) {
    }
}

bool ClipboardSession::flush() {
    xcb().flush(handle());
    bool wasAnyThere = false;
    while (const auto event = XReply<xcb_generic_event_t>(xcb().poll_for_queued_event(handle()))) {
        handle(*event);
        wasAnyThere = true;
    }
    return wasAnyThere;
}

bool ClipboardSession::waitUntil(const std::function<bool()>& isReached, Moment deadline) {
    for (;;) {
        pump();
        if (isReached()) {
            return true;
        }
        if (flush()) {
            continue;
        }
        if (!isAlive() || !awaitReady(descriptor_, POLLIN, deadline)) {
            return false;
        }
    }
}

std::optional<xcb_timestamp_t> ClipboardSession::serverTime() {
    clockReading_.reset();
    xcb().change_property(handle(), XCB_PROP_MODE_REPLACE, window_, clockProperty_, XCB_ATOM_INTEGER, 8, 0, nullptr);
    if (!waitUntil([this] { return clockReading_.has_value(); }, connection_.replyDeadline())) {
        giveUp();
    }
    return clockReading_;
}

bool ClipboardSession::awaitRoom() {
    const Moment deadline = connection_.replyDeadline();
    xcb().flush(handle());
    pollfd socket{.fd = descriptor_, .events = POLLOUT, .revents = 0};
    while (isAlive() && poll(&socket, 1, 0) == 0) {
        if (!awaitReady(descriptor_, POLLOUT, deadline)) {
            giveUp();
        }
    }
    return isAlive();
}

void ClipboardSession::setProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint8_t format,
                                   std::string_view bytes) {
    // If the server does not read, libxcb would block without a timeout.
    if (awaitRoom()) {
        const auto count = static_cast<std::uint32_t>(bytes.size() / (format / 8U));
        xcb().change_property(handle(), XCB_PROP_MODE_REPLACE, window, property, type, format, count, bytes.data());
    }
}

void ClipboardSession::giveUp() {
    isGivenUp_ = true;
    shutdown(descriptor_, SHUT_RDWR);
}

}  // namespace lomaris
