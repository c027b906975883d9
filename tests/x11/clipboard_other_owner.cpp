#include "tests/x11/clipboard_other_owner.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>

namespace lomaris::test {

namespace {

constexpr std::size_t pieceSize = 60000;

}  // namespace

OtherOwner::OtherOwner(std::vector<OfferedTarget> offered) : offered_(std::move(offered)) {
    std::vector<std::string> names{"TARGETS"};
    bool hasOwnList = false;
    for (OfferedTarget& target : offered_) {
        names.push_back(target.target);
        hasOwnList = hasOwnList || target.target == "TARGETS";
        if (target.value.type.empty()) {
            target.value.type = target.target;
        }
    }
    if (!hasOwnList) {
        offered_.push_back({"TARGETS", {"ATOM", 32, peer_->atomList(names)}, Conduct::answers});
    }
    for (const OfferedTarget& target : offered_) {
        byAtom_[peer_->atom(target.target)] = &target;
    }
    xcb_set_selection_owner(peer_->handle(), peer_->window(), peer_->atom("CLIPBOARD"), peer_->time());
    if (peer_->owner() != peer_->window()) {
        throw std::runtime_error("another program could not become the owner");
    }
    thread_ = std::thread([this] { run(); });
}

OtherOwner::~OtherOwner() {
    isEnding_ = true;
    thread_.join();
}

void OtherOwner::run() {
    while (!isEnding_ && peer_) {
        while (peer_) {
            const PeerEvent event(xcb_poll_for_event(peer_->handle()));
            if (!event) {
                break;
            }
            handle(*event);
        }
        if (peer_) {
            xcb_flush(peer_->handle());
            pollfd descriptors{.fd = peer_->descriptor(), .events = POLLIN, .revents = 0};
            poll(&descriptors, 1, 5);
        }
    }
}

void OtherOwner::handle(const xcb_generic_event_t& event) {
    if (event.response_type == XCB_SELECTION_REQUEST) {
        answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
    } else if (event.response_type == XCB_PROPERTY_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (change.state == XCB_PROPERTY_DELETE) {
            sendPiece({change.window, change.atom});
        }
    }
}

void OtherOwner::answer(const xcb_selection_request_event_t& request) {
    asked_.push_back(peer_->name(request.target));
    const auto found = byAtom_.find(request.target);
    const Conduct conduct = found == byAtom_.end() ? Conduct::refuses : found->second->conduct;
    if (found != byAtom_.end()) {
        std::this_thread::sleep_for(found->second->work);
    }
    switch (conduct) {
        case Conduct::answers:
            answerWith(request, found->second->value);
            answerHeldBack();
            return;
        case Conduct::answersAfterALaterRequest:
            holdBack(request, found->second->value);
            return;
        case Conduct::answersTheFirstLate:
            if (!hasHeldBack_) {
                holdBack(request, {found->second->value.type, 8, "late"});
                return;
            }
            answerHeldBack();
            answerWith(request, found->second->value);
            return;
        case Conduct::refuses:
            notify(request, XCB_ATOM_NONE);
            return;
        case Conduct::isSilent:
            return;
        case Conduct::answersNothing:
            notify(request, request.property);
            return;
        case Conduct::answersElsewhere:
            peer_->setProperty(request.requestor, peer_->atom("TEST_ELSEWHERE"), found->second->value);
            notify(request, peer_->atom("TEST_ELSEWHERE"));
            return;
        default:
            break;
    }
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(peer_->handle(), request.requestor, XCB_CW_EVENT_MASK, &events);
    // The announced length is only a lower bound (ICCCM 2.7.2).
    peer_->setProperty(request.requestor, request.property, {"INCR", 32, std::string("\1\0\0\0", 4)});
    transfers_[{request.requestor, request.property}] = {found->second, 0};
    notify(request, request.property);
}

void OtherOwner::answerWith(const xcb_selection_request_event_t& request, const PropertyValue& value) {
    peer_->setProperty(request.requestor, request.property, value);
    notify(request, request.property);
}

void OtherOwner::holdBack(const xcb_selection_request_event_t& request, const PropertyValue& value) {
    heldBack_.emplace(request, value);
    hasHeldBack_ = true;
}

void OtherOwner::answerHeldBack() {
    if (const auto heldBack = std::exchange(heldBack_, std::nullopt)) {
        answerWith(heldBack->first, heldBack->second);
    }
}

void OtherOwner::sendPiece(const Place& place) {
    const auto found = transfers_.find(place);
    if (found == transfers_.end()) {
        return;
    }
    auto& [offered, offset] = found->second;
    const bool isFirst = offset == 0;
    if (!isFirst && offered->conduct == Conduct::endsAfterOnePiece) {
        peer_.reset();
        return;
    }
    if (!isFirst && offered->conduct == Conduct::stopsAfterOnePiece) {
        return;
    }
    const std::string& bytes = offered->value.bytes;
    PropertyValue piece{offered->value.type, offered->value.format,
                        bytes.substr(std::min(offset, bytes.size()), pieceSize)};
    if (!isFirst && offered->conduct == Conduct::changesItsMind) {
        piece.type = "TEST_OTHER_TYPE";
    }
    peer_->setProperty(place.first, place.second, piece);
    offset += piece.bytes.size();
    if (piece.bytes.empty()) {
        transfers_.erase(found);
    }
}

void OtherOwner::notify(const xcb_selection_request_event_t& request, xcb_atom_t property) {
    xcb_selection_notify_event_t event{};
    event.response_type = XCB_SELECTION_NOTIFY;
    event.time = request.time;
    event.requestor = request.requestor;
    event.selection = request.selection;
    event.target = request.target;
    event.property = property;
    std::array<char, 32> message{};
    std::memcpy(message.data(), &event, sizeof event);
    xcb_send_event(peer_->handle(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, message.data());
    xcb_flush(peer_->handle());
}

}  // namespace lomaris::test
