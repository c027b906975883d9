#include "platform/linux/x11_connection.h"

#include "platform/linux/x11_connect.h"

#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <chrono>

namespace lomaris {

namespace {

using Clock = std::chrono::steady_clock;

/// How long the server may take for one answer.
constexpr auto replyDeadline = std::chrono::milliseconds(1500);

/// Sleeps until the server has sent something or the deadline passes; whether there may be something to read.
bool waitForInput(int descriptor, Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    if (left.count() <= 0) {
        return false;
    }
    pollfd descriptors{.fd = descriptor, .events = POLLIN, .revents = 0};
    // An interrupted wait counts as input: the caller looks, finds nothing and comes back.
    return poll(&descriptors, 1, static_cast<int>(left.count())) != 0;
}

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
    const X11Connected connected = connecting_ == Connecting::withDeadline ? connectToDisplay(*xcb_, replyDeadline)
                                                                           : connectWithoutDeadline(*xcb_);
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

bool X11Connection::hasExtension(std::string_view name) {
    const auto reply = wait<xcb_query_extension_reply_t>(
        xcb_->query_extension(connection_, static_cast<std::uint16_t>(name.size()), name.data()));
    return reply && reply->present != 0;
}

bool X11Connection::prepareExtension(xcb_extension_t* extension) {
    xcb_->prefetch_extension_data(connection_, extension);
    // The server answers in order: once this reply is there, so is the one about the extension.
    return wait<xcb_get_input_focus_reply_t>(xcb_->get_input_focus(connection_)) != nullptr;
}

void* X11Connection::waitForReply(unsigned int sequence) {
    if (state_ != State::open) {
        return nullptr;
    }
    const auto deadline = Clock::now() + replyDeadline;
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
        if (!waitForInput(xcb_->get_file_descriptor(connection_), deadline)) {
            giveUp();
            return nullptr;
        }
    }
}

void X11Connection::giveUp() {
    state_ = State::unusable;
    const int descriptor = connection_ != nullptr ? xcb_->get_file_descriptor(connection_) : -1;
    if (descriptor >= 0) {
        // A request that is sent all the same fails at once instead of waiting for room in the socket.
        shutdown(descriptor, SHUT_RDWR);
    }
}

}  // namespace lomaris
