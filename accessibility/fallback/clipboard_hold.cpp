#include "accessibility/fallback/clipboard_hold.h"

#include <chrono>
#include <utility>

namespace lomaris {

namespace {

using std::chrono::milliseconds;

constexpr Duration pollingSlice = milliseconds(20);
constexpr Duration longestWaitForHold = milliseconds(10000);
constexpr Duration minimumWaitAfterPaste = milliseconds(300);
constexpr Duration graceWaitAfterPaste = milliseconds(2500);

void restoreUnlessOverwritten(Pasteboard& pasteboard, PendingPaste& paste) {
    if (!paste.hold) {
        return;
    }
    if (pasteboard.changeCount() == paste.changeCount) {
        paste.saved->restore(pasteboard);
    }
    paste.hold.reset();
}

}  // namespace

std::optional<PasteboardSnapshot> ClipboardHold::saveClipboard() {
    if (!hold_ && !take()) {
        return std::nullopt;
    }
    PasteboardSnapshot saved =
        inherited_ ? std::move(*inherited_) : PasteboardSnapshot::capture(platform_.pasteboard());
    inherited_.reset();
    hold_->protect(saved.items());
    return saved;
}

bool ClipboardHold::take() {
    Scheduling& scheduling = platform_.scheduling();
    const Moment deadline = scheduling.now() + longestWaitForHold;
    if (pendingPaste_ && pendingPaste_->hold && !pendingPaste_->tracker->isConsumed()) {
        // The target may have requested the text while the run loop was not turning.
        scheduling.runLoopSlice(Duration::zero());
    }
    while (!tryTake()) {
        if (scheduling.now() >= deadline) {
            return false;
        }
        scheduling.runLoopSlice(pollingSlice);
    }
    pendingPaste_.reset();
    return true;
}

bool ClipboardHold::tryTake() {
    if (!pendingPaste_ || !pendingPaste_->hold) {
        hold_ = platform_.pasteboard().tryHold();
        return hold_ != nullptr;
    }
    // The target of the paste must find the text. Meanwhile the main queue may restore the clipboard.
    PendingPaste& paste = *pendingPaste_;
    const Moment now = platform_.scheduling().now();
    // A reader within the minimum wait may have been a clipboard manager.
    const bool isReleasable = now >= paste.deadline || (now >= paste.earliest && paste.tracker->isConsumed());
    if (!isReleasable || !paste.hold->retake()) {
        return false;
    }
    hold_ = std::move(paste.hold);
    if (platform_.pasteboard().changeCount() == paste.changeCount) {
        inherited_ = *paste.saved;
    }
    return true;
}

void ClipboardHold::expectPaste() { hold_->expectPaste(minimumWaitAfterPaste, graceWaitAfterPaste); }

void ClipboardHold::restoreAfterPaste(const std::shared_ptr<const PasteboardSnapshot>& saved,
                                      const std::shared_ptr<PasteboardConsumptionTracker>& tracker) {
    Pasteboard& pasteboard = platform_.pasteboard();
    const auto paste = std::make_shared<PendingPaste>();
    paste->hold = std::move(hold_);
    paste->saved = saved;
    paste->tracker = tracker;
    paste->changeCount = pasteboard.changeCount();
    const Moment now = platform_.scheduling().now();
    paste->earliest = now + minimumWaitAfterPaste;
    paste->deadline = now + graceWaitAfterPaste;
    pendingPaste_ = paste;
    tracker->whenReleasable(minimumWaitAfterPaste, graceWaitAfterPaste,
                            [&pasteboard, paste] { restoreUnlessOverwritten(pasteboard, *paste); });
}

}  // namespace lomaris
