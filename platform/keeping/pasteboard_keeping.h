#pragma once

#include "platform/scheduling.h"

#include <optional>
#include <variant>

// The decisions of the keeper, the process that serves what an operation has written to the pasteboard. The process
// that performs the operation is its partner. Both own the hold together, and the keeper restores the user's contents
// if the partner dies.
//
// All decisions are one pure function, from the keeper's state and an event to the next state and the actions to take,
// so that the real keeper and the simulated one cannot differ. It uses no clock, no connection and no global state. Any
// thread.
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

/// Input of the keeper. All but the last four are messages from the partner, in the order of its calls.
namespace event {
/// An operation begins.
struct Began {};
/// The partner has sent the contents to restore and is about to change the pasteboard.
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
/// The operation is over; the contents stay as they are.
struct Ended {};
/// The connection to the partner is closed: it died, unless it had ended its operation.
struct PartnerGone {};
struct OwnerChanged {
    Owner owner{};
};
/// A program has read the promised text of the contents that were published last.
struct TextRead {};
/// The time that the last decision set in `wakeAt` has come.
struct TimePassed {};
}  // namespace event

using Event = std::variant<event::Began, event::Protected, event::Published, event::CopyExpected, event::PasteExpected,
                           event::Ended, event::PartnerGone, event::OwnerChanged, event::TextRead, event::TimePassed>;

/// The keeper's state. Initially there is a partner that has not begun an operation.
///
/// - `isUnderWay`: an operation of the partner has begun and is not over.
/// - `isProtecting`: the saved contents must be restored if the partner dies or, if it is dead already, once a paste is
///   over.
/// - `holds`: the use of the pasteboard is exclusive.
/// - `isTextRead`: the promised text of the contents that were published last has been read.
/// - `copyDeadline`: a copy by the target before this time belongs to the operation.
/// - `paste`: present while the contents must stay for a target that was told to paste.
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

/// The actions of the keeper, in this order, and the time at which it needs `TimePassed` if no other event happens
/// before.
struct Decision {
    State state;
    /// The keeper serves the saved contents from now on and owns the pasteboard; no `OwnerChanged` follows for this
    /// change.
    bool restores = false;
    /// The keeper has nothing left to do and ends as soon as no transfer to a reader is in progress.
    bool isDone = false;
    std::optional<Moment> wakeAt;

    friend bool operator==(const Decision&, const Decision&) = default;
};

/// Decides on one event. The keeper takes or releases the hold according to `state.holds`.
[[nodiscard]] Decision decide(State state, const Event& event, Moment now);

}  // namespace lomaris::keeping
