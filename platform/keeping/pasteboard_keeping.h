#pragma once

#include "platform/scheduling.h"

#include <optional>
#include <variant>

// The decisions of the keeper: the process that serves what an operation has written to the pasteboard, owns the hold
// together with its partner, the process that performs the operation, and restores the user's contents if the partner
// dies. They are one pure function from what the keeper knows and what happened to what it does, so that the real
// keeper and the simulated one cannot differ. No clock, no connection, no memory of its own. Any thread.
namespace lomaris::keeping {

/// The owner of the pasteboard's contents.
enum class Owner {
    nobody,
    /// The keeper serves them.
    keeper,
    /// The application that the operation reads or writes.
    target,
    other,
};

/// What happens to the keeper. All but the last four are messages of the partner, in the order of its calls.
namespace event {
/// An operation begins.
struct Began {};
/// These are the contents to restore; the partner is about to change the pasteboard.
struct Protected {};
/// The keeper serves new contents of the partner.
struct Published {};
struct CopyExpected {
    Duration wait{};
};
struct PasteExpected {
    Duration minimumWait{};
    Duration graceWait{};
};
/// The operation is over and the contents stay as they are.
struct Ended {};
/// The partner is gone: it died, unless it had ended its operation.
struct PartnerGone {};
struct OwnerChanged {
    Owner owner{};
};
/// A program has read the promised text of the contents published last.
struct TextRead {};
/// The moment that the last decision named has come.
struct TimePassed {};
}  // namespace event

using Event = std::variant<event::Began, event::Protected, event::Published, event::CopyExpected, event::PasteExpected,
                           event::Ended, event::PartnerGone, event::OwnerChanged, event::TextRead, event::TimePassed>;

/// What the keeper knows. Starts with a partner that has not begun anything.
///
/// - `isUnderWay`: an operation of the partner has begun and is not over.
/// - `isProtecting`: the saved contents are to be restored if the partner dies, or, if it is dead already, are still to
///   be restored once a paste is over.
/// - `paste`: present while the contents must stay for a target that was told to paste.
/// - `copyDeadline`: until then a copy of the target belongs to the operation.
struct State {
    struct Paste {
        Moment earliest{};
        Moment latest{};

        friend bool operator==(const Paste&, const Paste&) = default;
    };

    bool hasPartner = true;
    bool isUnderWay = false;
    bool isProtecting = false;
    bool holds = false;
    bool isTextRead = false;
    Owner owner = Owner::other;
    std::optional<Moment> copyDeadline;
    std::optional<Paste> paste;

    friend bool operator==(const State&, const State&) = default;
};

/// What the keeper does now, in this order, and when it wants `TimePassed` if nothing else happens before.
struct Decision {
    State state;
    /// The keeper serves the saved contents from now on and owns the pasteboard; no `OwnerChanged` follows for that.
    bool restores = false;
    /// Nothing is left to be done: the keeper ends as soon as no reader is in the middle of a transfer.
    bool isDone = false;
    std::optional<Moment> wakeAt;

    friend bool operator==(const Decision&, const Decision&) = default;
};

/// Decides on one event. The keeper takes or releases the hold as `state.holds` says.
[[nodiscard]] Decision decide(State state, const Event& event, Moment now);

}  // namespace lomaris::keeping
