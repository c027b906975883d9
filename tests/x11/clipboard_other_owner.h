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

/// How another program that owns the clipboard answers a request for a target.
enum class Conduct {
    answers,
    refuses,
    isSilent,
    /// Says that it answered, and did not.
    answersNothing,
    /// Answers in a property that nobody named.
    answersElsewhere,
    /// Answers in pieces.
    answersInPieces,
    /// Stops after the first piece.
    stopsAfterOnePiece,
    /// Ends after the first piece.
    endsAfterOnePiece,
    /// Describes the second piece as another type than the first.
    changesItsMind,
    /// Replies only after the reply to a later request.
    answersAfterALaterRequest,
    /// Replies to the first request late, with bytes that nobody wants, and properly to all later ones.
    answersTheFirstLate,
};

struct OfferedTarget {
    std::string target;
    PropertyValue value;
    Conduct conduct = Conduct::answers;
    /// What the owner does for so long before it replies; other requests wait.
    std::chrono::milliseconds work{};
};

/// Another program that owns the clipboard; returns from the constructor once it does. It answers on a thread of its
/// own until it is destroyed.
class OtherOwner {
public:
    /// It offers a list of these targets, TARGETS included, unless one of them is TARGETS itself.
    explicit OtherOwner(std::vector<OfferedTarget> offered);
    OtherOwner(const OtherOwner&) = delete;
    OtherOwner& operator=(const OtherOwner&) = delete;
    ~OtherOwner();

    /// The targets that it was asked for, in order. To be called when nobody asks.
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
