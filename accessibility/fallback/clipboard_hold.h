#pragma once

#include "accessibility/fallback/pasteboard_consumption_tracker.h"
#include "accessibility/fallback/pasteboard_snapshot.h"
#include "platform/platform.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace lomaris {

/// A paste whose clipboard is still to be restored: the operation after it waits for the target and then inherits what
/// was saved. Shared with the block on the main queue that restores. Main thread.
struct PendingPaste {
    /// Null once the clipboard was restored, left to another program, or passed on to the next operation.
    std::unique_ptr<PasteboardHold> hold;
    std::shared_ptr<const PasteboardSnapshot> saved;
    std::shared_ptr<const PasteboardConsumptionTracker> tracker;
    /// The change count of the pasteboard with the staged text.
    std::int64_t changeCount = 0;
    /// When the text need not stay any longer if it was read, and when it need not if it was not.
    Moment earliest{};
    Moment deadline{};
};

/// The exclusive use of the pasteboard during one operation, a whole command as a rule, and what passes from one
/// operation of this process to the next: the clipboard that a paste has saved and not yet restored. The use begins
/// with the first snapshot, so that operations that never touch the clipboard take no hold. Borrows the platform. Main
/// thread.
class ClipboardHold {
public:
    /// One operation, or a part of one: scopes nest, and the outermost one ends the exclusive use.
    class Scope {
    public:
        explicit Scope(ClipboardHold& hold) : hold_(hold) { ++hold_.depth_; }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope() {
            if (--hold_.depth_ == 0) {
                hold_.hold_.reset();
            }
        }

    private:
        ClipboardHold& hold_;
    };

    explicit ClipboardHold(Platform& platform) : platform_(platform) {}

    /// The user's clipboard, protected against a sudden end of the process from now on. Takes the hold first unless the
    /// scope has it; waits for that for up to 10 s, turning the run loop. Throws `BridgeError::clipboardFallbackFailed`
    /// if another operation still has it then; nothing was touched. There must be a scope.
    [[nodiscard]] PasteboardSnapshot saveClipboard();

    /// Announces that the target is being told to copy, or to paste what is staged. After `saveClipboard`.
    void expectCopy(std::optional<ProcessIdentifier> target, Duration wait) { hold_->expectCopy(target, wait); }
    void expectPaste();

    /// Restores `saved` once the staged text may be released, unless another program has written to the pasteboard by
    /// then or another operation of this process has begun. Ends the scope's use of the pasteboard. Called after the
    /// paste key.
    void restoreAfterPaste(const std::shared_ptr<const PasteboardSnapshot>& saved,
                           const std::shared_ptr<PasteboardConsumptionTracker>& tracker);

private:
    void take();
    [[nodiscard]] bool tryTake();

    Platform& platform_;
    int depth_ = 0;
    std::unique_ptr<PasteboardHold> hold_;
    std::shared_ptr<PendingPaste> pendingPaste_;
    std::optional<PasteboardSnapshot> inherited_;
};

}  // namespace lomaris
