#pragma once

#include "accessibility/fallback/pasteboard_consumption_tracker.h"
#include "accessibility/fallback/pasteboard_snapshot.h"
#include "platform/platform.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace lomaris {

/// A paste after which the clipboard has not been restored yet. The next operation waits until the target has read the
/// text, and then takes over the saved contents. Shared with the main-queue block that restores the clipboard. Main
/// thread.
struct PendingPaste {
    /// Null if the clipboard was restored or now belongs to another program or to the next operation.
    std::unique_ptr<PasteboardHold> hold;
    std::shared_ptr<const PasteboardSnapshot> saved;
    std::shared_ptr<const PasteboardConsumptionTracker> tracker;
    /// The pasteboard's change count after the text was staged.
    std::int64_t changeCount = 0;
    /// The time from which the text may be replaced if it has been read.
    Moment earliest{};
    /// The time from which the text may be replaced even if it has not been read.
    Moment deadline{};
};

/// The exclusive use of the pasteboard during one operation, usually a whole command. It begins with the first
/// `saveClipboard`, so operations that do not use the clipboard never take it. Also passes the contents saved by a
/// paste to the next operation, if they have not been restored by then. Borrows the platform. Main thread.
class ClipboardHold {
public:
    /// An operation or part of one. Scopes nest; the exclusive use ends with the outermost scope.
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

    /// Returns the user's clipboard and protects it from now on: it is restored even if the process dies. Takes the
    /// exclusive use first if the current scope does not have it, and runs the run loop for up to 10 s until it is
    /// free. Returns nullopt if it is still in use then, with nothing changed. Requires a scope.
    [[nodiscard]] std::optional<PasteboardSnapshot> saveClipboard();

    /// Announces that the target is about to copy, or to paste the staged text. Requires a previous `saveClipboard`.
    void expectCopy(std::optional<ProcessIdentifier> target, Duration wait) { hold_->expectCopy(target, wait); }
    void expectPaste();

    /// Restores `saved` when the staged text may be released, unless another program writes to the pasteboard or
    /// another operation of this process begins before that. Ends the scope's exclusive use. Called after the paste key
    /// was posted.
    void restoreAfterPaste(const std::shared_ptr<const PasteboardSnapshot>& saved,
                           const std::shared_ptr<PasteboardConsumptionTracker>& tracker);

private:
    [[nodiscard]] bool take();
    [[nodiscard]] bool tryTake();

    Platform& platform_;
    int depth_ = 0;
    std::unique_ptr<PasteboardHold> hold_;
    std::shared_ptr<PendingPaste> pendingPaste_;
    std::optional<PasteboardSnapshot> inherited_;
};

}  // namespace lomaris
