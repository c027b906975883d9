#pragma once

#include "platform/linux/process/monotonic_clock.h"

#include <chrono>

namespace lomaris {

/// Decides when to give up a selection owner from which several conversions have been requested.
///
/// An owner that delivers nothing for 0.5 s has stalled at the oldest conversion: the caller then requests all others
/// as well. The owner is given up 1 s after its last progress before the stall, but not earlier than 0.5 s after its
/// latest progress. A conversion that is never delivered therefore costs 1 s and does not prevent the others. If the
/// oldest conversion is delivered after all, the owner is only slow, and has 1 s after each progress from then on.
class ProgressDeadline {
public:
    /// `begin` is the time of the first request. No deadline is later than `end`.
    ProgressDeadline(Moment begin, Moment end) : lastProgress_(begin), end_(end) {}

    /// The time until which to wait for progress. Before a stall that is its beginning, afterwards the time to give up.
    [[nodiscard]] Moment deadline() const;

    /// To be called when the deadline has passed. Returns false if the owner is to be given up.
    [[nodiscard]] bool beginStall(Moment now);

    /// To be called for every reply and every piece. `isOldest` is true if it belongs to the first conversion.
    void noteProgress(Moment now, bool isOldest);

private:
    /// How long an owner may deliver nothing before it counts as stalled, and before it is given up.
    static constexpr Duration pauseBeforeStall_ = std::chrono::milliseconds(500);
    static constexpr Duration longestPause_ = std::chrono::seconds(1);

    Moment lastProgress_;
    Moment end_;
    Moment longestStall_{};
    Duration pause_ = pauseBeforeStall_;
    bool hasStalled_ = false;
};

}  // namespace lomaris
