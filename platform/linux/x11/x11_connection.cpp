#include "platform/linux/x11/x11_connection.h"

#include "platform/linux/process/descriptor_wait.h"
#include "platform/linux/process/monotonic_clock.h"
#include "platform/linux/x11/x11_connect.h"

#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <chrono>

namespace lomaris {

namespace {

/// The timeout for one reply of the server.
constexpr auto patience = std::chrono::milliseconds(1500);

}  // namespace

X11Connection::~X11Connection() {
    if (connection_ != nullptr) {
        xcb_->disconnect(connection_);
    }
}

bool X11Connection::isUsable() {
    if (state_ == State::unopened) {
        state_ = State::open;
        if (!open()) {
            giveUp();
        }
    }
    return state_ == State::open;
}

bool X11Connection::open() {
    if (std::getenv("DISPLAY") == nullptr) {
        return false;
    }
    xcb_ = xcbFunctions();
    if (xcb_ == nullptr) {
        return false;
    }
    const X11Connected connected =
        waiting_ == Waiting::withDeadline ? connectToDisplay(*xcb_, patience) : connectWithoutDeadline(*xcb_);
    connection_ = connected.connection;
    return connection_ != nullptr && chooseScreen(connected.screen) && internAtoms();
}

bool X11Connection::chooseScreen(int number) {
    xcb_screen_iterator_t screens = xcb_->setup_roots_iterator(xcb_->get_setup(connection_));
    for (; number > 0 && screens.rem > 0; --number) {
        xcb_->screen_next(&screens);
    }
    if (screens.rem <= 0) {
        return false;
    }
    root_ = screens.data->root;
    return true;
}

bool X11Connection::internAtoms() {
    struct Name {
        std::string_view name;
        xcb_atom_t* atom;
    };
    const std::array<Name, 5> names{{
        {"_NET_ACTIVE_WINDOW", &atoms_.activeWindow},
        {"_NET_CLIENT_LIST", &atoms_.clientList},
        {"_GTK_APPLICATION_ID", &atoms_.gtkApplicationId},
        {"WM_STATE", &atoms_.windowState},
        {"_NET_WM_PID", &atoms_.windowProcess},
    }};
    std::array<xcb_intern_atom_cookie_t, names.size()> cookies{};
    for (std::size_t index = 0; index < names.size(); ++index) {
        const std::string_view name = names[index].name;
        cookies[index] = xcb_->intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    }
    for (std::size_t index = 0; index < names.size(); ++index) {
        const auto reply = wait<xcb_intern_atom_reply_t>(cookies[index]);
        if (!reply) {
            return false;
        }
        *names[index].atom = reply->atom;
    }
    return true;
}

Moment X11Connection::replyDeadline() const {
    return waiting_ == Waiting::withDeadline ? later(monotonicNow(), patience) : Moment::max();
}

bool X11Connection::hasExtension(std::string_view name) {
    const auto reply = wait<xcb_query_extension_reply_t>(
        xcb_->query_extension(connection_, static_cast<std::uint16_t>(name.size()), name.data()));
    return reply && reply->present != 0;
}

bool X11Connection::prepareExtension(xcb_extension_t* extension) {
    xcb_->prefetch_extension_data(connection_, extension);
    // The server replies in order: when this reply has arrived, so has the one about the extension.
    return wait<xcb_get_input_focus_reply_t>(xcb_->get_input_focus(connection_)) != nullptr;
}

void* X11Connection::waitForReply(unsigned int sequence) {
    if (state_ != State::open) {
        return nullptr;
    }
    const Moment deadline = replyDeadline();
    xcb_->flush(connection_);
    for (;;) {
        void* reply = nullptr;
        xcb_generic_error_t* error = nullptr;
        if (xcb_->poll_for_reply(connection_, sequence, &reply, &error) != 0) {
            std::free(error);
            if (xcb_->connection_has_error(connection_) != 0) {
                giveUp();
            }
            return reply;
        }
        if (!awaitReady(xcb_->get_file_descriptor(connection_), POLLIN, deadline)) {
            giveUp();
            return nullptr;
        }
    }
}

void X11Connection::giveUp() {
    state_ = State::unusable;
    const int descriptor = connection_ != nullptr ? xcb_->get_file_descriptor(connection_) : -1;
    if (descriptor >= 0) {
        // Later requests fail at once instead of blocking when the buffer of the socket is full.
        shutdown(descriptor, SHUT_RDWR);
    }
}

}  // namespace lomaris
