#pragma once

#include "platform/linux/process/monotonic_clock.h"

#include <chrono>

namespace lomaris {

/// When to give up a selection owner from which several conversions have been requested.
///
/// An owner that delivers nothing for 0.5 s has stalled at the oldest conversion: the caller then requests all others
/// as well. The owner is given up 1 s after the beginning of the stall, but not earlier than 0.5 s after its last
/// progress, so that a conversion that is never delivered costs 1 s and no other conversion. If the conversion that
/// stalled is delivered after all, the owner is only slow, and has 1 s after each progress from then on.
class ProgressDeadline {
public:
    /// `begin` is the moment of the first request. Every deadline is at `end` at the latest.
    ProgressDeadline(Moment begin, Moment end) : lastProgress_(begin), end_(end) {}

    /// The moment until which to wait for progress: that of the stall, then that of giving up.
    [[nodiscard]] Moment deadline() const;

    /// To be called when the deadline has passed. False if the owner is to be given up.
    [[nodiscard]] bool beginStall(Moment now);

    /// To be called for every reply and every piece. `isOldest` if it belongs to the conversion that was requested
    /// first.
    void noteProgress(Moment now, bool isOldest);

private:
    /// How long the owner may do nothing before it has stalled, and before it is given up.
    static constexpr Duration pauseBeforeStall_ = std::chrono::milliseconds(500);
    static constexpr Duration longestPause_ = std::chrono::seconds(1);

    Moment lastProgress_;
    Moment end_;
    Moment longestStall_{};
    Duration pause_ = pauseBeforeStall_;
    bool hasStalled_ = false;
};

}  // namespace lomaris
