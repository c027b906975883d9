#include "platform/linux/x11/clipboard/clipboard_server.h"

#include <array>
#include <cstring>
#include <string>
#include <string_view>

namespace lomaris {

namespace {

/// The size limit of the list of a MULTIPLE request, in units of four bytes.
constexpr std::uint32_t longestList = 8192;

std::string_view bytesOf(const std::vector<xcb_atom_t>& numbers) {
    return {reinterpret_cast<const char*>(numbers.data()), numbers.size() * sizeof(xcb_atom_t)};
}

/// True if `time` is earlier than `other`. X server timestamps wrap after about 49 days.
bool isBefore(xcb_timestamp_t time, xcb_timestamp_t other) { return static_cast<std::int32_t>(time - other) < 0; }

}  // namespace

void ClipboardServer::handle(const xcb_generic_event_t& event) {
    if (event.response_type == XCB_SELECTION_REQUEST) {
        requests_.push_back(reinterpret_cast<const Request&>(event));
    } else {
        transfers_.handle(event);
    }
}

void ClipboardServer::serve() {
    while (!requests_.empty()) {
        const Request request = requests_.front();
        requests_.pop_front();
        transfers_.dropStalled();
        // Obsolete clients do not name a property; the target atom is used instead (ICCCM 2.2).
        const xcb_atom_t property = request.property == xcb_atom_t{XCB_ATOM_NONE} ? request.target : request.property;
        // Keep the contents alive during the reply: a provider may replace them.
        const std::shared_ptr<ServedContents> contents = contents_();
        const bool isAnswered =
            contents && isForUs(request) && answer(*contents, request.requestor, request.target, property);
        notify(request, isAnswered ? property : xcb_atom_t{XCB_ATOM_NONE});
    }
}

bool ClipboardServer::isForUs(const Request& request) const {
    // This process requests nothing from itself: such a request is forged.
    return ownership_.isOwner() && request.selection == session_.names().clipboard &&
           request.owner == session_.window() && !session_.isOwnWindow(request.requestor) &&
           (request.time == XCB_CURRENT_TIME || !isBefore(request.time, ownership_.acquiredAt()));
}

bool ClipboardServer::answer(ServedContents& contents, xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property) {
    const ClipboardNames& names = session_.names();
    if (target == names.targets) {
        answerTargets(contents, requestor, property);
        return true;
    }
    if (target == names.timestamp) {
        session_.setProperty(requestor, property, XCB_ATOM_INTEGER, 32, bytesOf({ownership_.acquiredAt()}));
        return true;
    }
    if (target == names.multiple) {
        return answerMultiple(contents, requestor, property);
    }
    return answerContents(contents, requestor, target, property);
}

void ClipboardServer::answerTargets(const ServedContents& contents, xcb_window_t requestor, xcb_atom_t property) {
    const ClipboardNames& names = session_.names();
    std::vector<xcb_atom_t> targets{names.targets, names.timestamp, names.multiple};
    for (const xcb_atom_t target : session_.atoms().atoms(contents.targets())) {
        if (target != XCB_ATOM_NONE) {
            targets.push_back(target);
        }
    }
    if (bytesOf(targets).size() > session_.longestPiece()) {
        transfers_.start(requestor, property, XCB_ATOM_ATOM, 32, std::make_shared<const Bytes>(bytesOf(targets)));
    } else {
        session_.setProperty(requestor, property, XCB_ATOM_ATOM, 32, bytesOf(targets));
    }
}

bool ClipboardServer::answerMultiple(ServedContents& contents, xcb_window_t requestor, xcb_atom_t property) {
    std::vector<xcb_atom_t> pairs = readPairs(requestor, property);
    if (pairs.empty()) {
        return false;
    }
    for (std::size_t index = 0; index + 1 < pairs.size(); index += 2) {
        xcb_atom_t& target = pairs[index];
        xcb_atom_t& place = pairs[index + 1];
        const bool isPossible = place != XCB_ATOM_NONE && target != session_.names().multiple;
        if (!isPossible || !answer(contents, requestor, target, place)) {
            // Some readers check the target of a refused pair, others the property.
            target = place = XCB_ATOM_NONE;
        }
    }
    // Report the refused targets in the reader's list (ICCCM 2.6.2, MULTIPLE).
    session_.setProperty(requestor, property, session_.names().atomPair, 32, bytesOf(pairs));
    return true;
}

std::vector<xcb_atom_t> ClipboardServer::readPairs(xcb_window_t requestor, xcb_atom_t property) {
    const auto reply = session_.connection().wait<xcb_get_property_reply_t>(session_.xcb().get_property(
        session_.handle(), 0, requestor, property, XCB_GET_PROPERTY_TYPE_ANY, 0, longestList));
    if (!reply || reply->format != 32 || reply->value_len % 2 != 0 || reply->bytes_after != 0 ||
        reply->value_len > reply->length) {
        return {};
    }
    std::vector<xcb_atom_t> pairs(reply->value_len);
    if (!pairs.empty()) {
        std::memcpy(pairs.data(), session_.xcb().get_property_value(reply.get()), pairs.size() * sizeof(xcb_atom_t));
    }
    return pairs;
}

bool ClipboardServer::answerContents(ServedContents& contents, xcb_window_t requestor, xcb_atom_t target,
                                     xcb_atom_t property) {
    const std::string name = session_.atoms().names({&target, 1}).front();
    const std::optional<ServedTarget> served = contents.served(name);
    if (!served) {
        return false;
    }
    const std::string_view typeName = served->form.type;
    const xcb_atom_t type = typeName == name ? target : session_.atoms().atom(typeName);
    if (type == XCB_ATOM_NONE) {
        return false;
    }
    if (served->bytes->size() > session_.longestPiece()) {
        transfers_.start(requestor, property, type, served->form.format, served->bytes);
    } else {
        session_.setProperty(requestor, property, type, served->form.format, *served->bytes);
    }
    return true;
}

void ClipboardServer::notify(const Request& request, xcb_atom_t property) {
    xcb_selection_notify_event_t event{};
    event.response_type = XCB_SELECTION_NOTIFY;
    event.time = request.time;
    event.requestor = request.requestor;
    event.selection = request.selection;
    event.target = request.target;
    event.property = property;
    // libxcb sends 32 bytes, which is more than the size of this struct.
    std::array<char, 32> message{};
    std::memcpy(message.data(), &event, sizeof event);
    session_.xcb().send_event(session_.handle(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, message.data());
}

}  // namespace lomaris
