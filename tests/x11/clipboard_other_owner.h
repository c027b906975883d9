#pragma once

#include "tests/x11/clipboard_peer.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace lomaris::test {

/// How another program that owns the clipboard handles a request for a target.
enum class Conduct {
    answers,
    refuses,
    isSilent,
    /// Sends SelectionNotify without setting the property.
    answersNothing,
    /// Sets another property than the requested one.
    answersElsewhere,
    /// Sends the value with INCR.
    answersInPieces,
    /// Stops after the first piece.
    stopsAfterOnePiece,
    /// Ends after the first piece.
    endsAfterOnePiece,
    /// Sends the second piece with another type than the first.
    changesItsMind,
    /// Replies only after it has replied to a later request.
    answersAfterALaterRequest,
    /// Replies to the first request late, with wrong bytes, and properly to all later ones.
    answersTheFirstLate,
};

struct OfferedTarget {
    std::string target;
    PropertyValue value;
    Conduct conduct = Conduct::answers;
    /// How long the owner is busy before it replies. Other requests wait for that time too.
    std::chrono::milliseconds work{};
};

/// Another program that owns the clipboard from the end of its constructor. It replies on its own thread until it is
/// destroyed.
class OtherOwner {
public:
    /// Offers these targets. Also replies to TARGETS with a list of them, unless TARGETS is one of them.
    explicit OtherOwner(std::vector<OfferedTarget> offered);
    OtherOwner(const OtherOwner&) = delete;
    OtherOwner& operator=(const OtherOwner&) = delete;
    ~OtherOwner();

    /// The targets that were requested, in order. To be called when there are no pending requests.
    [[nodiscard]] const std::vector<std::string>& asked() const { return asked_; }

private:
    using Place = std::pair<xcb_window_t, xcb_atom_t>;
    struct Transfer {
        const OfferedTarget* offered;
        std::size_t offset;
    };

    void run();
    void handle(const xcb_generic_event_t& event);
    void answer(const xcb_selection_request_event_t& request);
    void holdBack(const xcb_selection_request_event_t& request, const PropertyValue& value);
    void answerHeldBack();
    void answerWith(const xcb_selection_request_event_t& request, const PropertyValue& value);
    void sendPiece(const Place& place);
    void notify(const xcb_selection_request_event_t& request, xcb_atom_t property);

    std::unique_ptr<ClipboardPeer> peer_ = std::make_unique<ClipboardPeer>();
    std::vector<OfferedTarget> offered_;
    std::map<xcb_atom_t, const OfferedTarget*> byAtom_;
    std::map<Place, Transfer> transfers_;
    std::vector<std::string> asked_;
    std::optional<std::pair<xcb_selection_request_event_t, PropertyValue>> heldBack_;
    bool hasHeldBack_ = false;
    std::atomic<bool> isEnding_ = false;
    std::thread thread_;
};

}  // namespace lomaris::test
