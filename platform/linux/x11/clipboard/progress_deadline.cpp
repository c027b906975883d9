#include "platform/linux/x11/clipboard/progress_deadline.h"

#include <algorithm>

namespace lomaris {

Moment ProgressDeadline::deadline() const {
    return std::min(std::max(longestStall_, later(lastProgress_, pause_)), end_);
}

bool ProgressDeadline::beginStall(Moment now) {
    if (hasStalled_ || now >= end_) {
        return false;
    }
    hasStalled_ = true;
    longestStall_ = later(lastProgress_, longestPause_);
    return true;
}

void ProgressDeadline::noteProgress(Moment now, bool isOldest) {
    lastProgress_ = now;
    if (hasStalled_ && isOldest) {
        pause_ = longestPause_;
    }
}

}  // namespace lomaris
