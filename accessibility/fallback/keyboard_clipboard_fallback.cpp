#include "accessibility/fallback/keyboard_clipboard_fallback.h"

#include "accessibility/fallback/key_strokes.h"
#include "accessibility/fallback/pasteboard_consumption_tracker.h"
#include "accessibility/fallback/pasteboard_snapshot.h"
#include "accessibility/model/bridge_error.h"
#include "accessibility/model/capture_trace.h"
#include "text/utf8.h"

#include <chrono>
#include <memory>
#include <string>
#include <utility>

namespace lomaris {

namespace {

using std::chrono::milliseconds;

constexpr Duration pollingSlice = milliseconds(20);
constexpr Duration waitAfterKey = milliseconds(1000);
constexpr Duration waitAfterMenu = milliseconds(200);
constexpr Duration waitAfterMenuBeforeReplacement = milliseconds(1000);
constexpr Duration pauseBetweenAttempts = milliseconds(80);
constexpr Duration pauseAfterCollapse = milliseconds(80);

int attemptCount(ClipboardSelectionReadPolicy policy) {
    return policy == ClipboardSelectionReadPolicy::shortcut ? 2 : 3;
}

/// Puts the user's clipboard back once: when it goes, or when the process is told to end before that, unless it was
/// released.
class ClipboardRestore {
public:
    ClipboardRestore(Platform& platform, const PasteboardSnapshot& snapshot)
        : pasteboard_(platform.pasteboard()),
          snapshot_(snapshot),
          termination_(platform.scheduling().onTermination([this] { restoreNow(); })) {}
    ClipboardRestore(const ClipboardRestore&) = delete;
    ClipboardRestore& operator=(const ClipboardRestore&) = delete;
    ~ClipboardRestore() { restoreNow(); }

    /// The process ends now if it was told to, and not any more until this goes or is released.
    void holdOffTermination() { termination_->holdOff(); }

    /// Whatever is on the clipboard stays there.
    void release() {
        done_ = true;
        termination_.reset();
    }

private:
    void restoreNow() {
        if (!std::exchange(done_, true)) {
            snapshot_.restore(pasteboard_);
        }
    }

    Pasteboard& pasteboard_;
    const PasteboardSnapshot& snapshot_;
    bool done_ = false;
    // Goes when the clipboard has been put back: to be told to end meanwhile does not cut that short.
    std::unique_ptr<TerminationGuard> termination_;
};

enum class CopyMethod : std::uint8_t { menu, key };

/// Presses the menu item where there is one; a press that fails makes this an attempt by key.
CopyMethod pressCopy(Platform& platform, std::optional<ProcessIdentifier> target,
                     const std::function<void()>& menuCommand) {
    if (menuCommand) {
        try {
            menuCommand();
            SelectionCaptureTrace::shared().increment(SelectionCaptureTrace::Key::menuPresses);
            return CopyMethod::menu;
        } catch (const BridgeError&) {
            // The key is tried instead; why the menu item failed helps nobody.
        }
    }
    postKey(platform, key_stroke::copy, target);
    SelectionCaptureTrace::shared().increment(SelectionCaptureTrace::Key::keyPresses);
    return CopyMethod::key;
}

Duration waitAfter(CopyMethod method, ClipboardSelectionReadPolicy policy) {
    if (method == CopyMethod::key) {
        return waitAfterKey;
    }
    return policy == ClipboardSelectionReadPolicy::guardedReplacement ? waitAfterMenuBeforeReplacement : waitAfterMenu;
}

BridgeError noResponse(int attempts) {
    const std::string detail =
        "the target application did not respond to Cmd+C after " + std::to_string(attempts) + " attempt(s)";
    return BridgeError::clipboardFallbackFailed(textFromUtf8(detail));
}

}  // namespace

bool KeyboardClipboardFallback::waitForPasteboardChange(std::int64_t count, Duration timeout) {
    Scheduling& scheduling = platform_.scheduling();
    const Moment deadline = scheduling.now() + timeout;
    while (scheduling.now() < deadline) {
        if (platform_.pasteboard().changeCount() != count) {
            return true;
        }
        scheduling.runLoopSlice(pollingSlice);
    }
    return false;
}

Text KeyboardClipboardFallback::readSelectedText(std::optional<ProcessIdentifier> targetProcessIdentifier,
                                                 ClipboardSelectionReadPolicy policy,
                                                 const std::function<void()>& copyCommand) {
    Pasteboard& pasteboard = platform_.pasteboard();
    const auto scope = operation();
    const PasteboardSnapshot snapshot = hold_.saveClipboard();
    const ClipboardRestore restore(platform_, snapshot);
    const bool beforeReplacement = policy == ClipboardSelectionReadPolicy::guardedReplacement;
    const int attempts = attemptCount(policy);
    bool changedWithoutText = false;

    for (int attempt = 1; attempt <= attempts; ++attempt) {
        if (attempt > 1) {
            platform_.scheduling().sleep(pauseBetweenAttempts);
        }
        // A private, empty value to copy over; a pasteboard that refuses it shows the copy all the same.
        static_cast<void>(stagePrivately(pasteboard, platform_.scheduling(), Text()));
        const std::int64_t count = pasteboard.changeCount();
        const bool byKey = beforeReplacement && attempt == attempts;
        // The copy may arrive before the press returns; which of the waits applies is known only afterwards.
        hold_.expectCopy(targetProcessIdentifier, waitAfterKey);
        const CopyMethod method =
            pressCopy(platform_, targetProcessIdentifier, byKey ? std::function<void()>() : copyCommand);
        const Duration wait = waitAfter(method, policy);
        hold_.expectCopy(targetProcessIdentifier, wait);
        if (waitForPasteboardChange(count, wait)) {
            const auto text = pasteboard.string();
            if (text && !text->empty()) {
                return *text;
            }
            changedWithoutText = true;
        }
        if (method == CopyMethod::menu && !beforeReplacement) {
            throw BridgeError::noTextSelected();
        }
    }
    throw changedWithoutText ? BridgeError::noTextSelected() : noResponse(attempts);
}

void KeyboardClipboardFallback::replaceSelectedText(TextView text,
                                                    std::optional<ProcessIdentifier> targetProcessIdentifier) {
    Pasteboard& pasteboard = platform_.pasteboard();
    const auto scope = operation();
    // Shared, as the blocks that carry it to the restore are copied on their way.
    const auto snapshot = std::make_shared<const PasteboardSnapshot>(hold_.saveClipboard());
    ClipboardRestore restore(platform_, *snapshot);
    const auto tracker = stagePrivately(pasteboard, platform_.scheduling(), text);
    if (!tracker) {
        throw BridgeError::clipboardFallbackFailed(u"could not stage replacement text");
    }
    // To end between the deletion and the paste would cost the user what was selected.
    restore.holdOffTermination();
    hold_.expectPaste();
    if (requiresSelectionCollapse(text)) {
        postKey(platform_, key_stroke::collapseSelection, targetProcessIdentifier);
        platform_.scheduling().sleep(pauseAfterCollapse);
    }
    postKey(platform_, key_stroke::paste, targetProcessIdentifier);
    hold_.expectPaste();
    // From here on the target must find the text, however late it comes for it.
    restore.release();
    hold_.restoreAfterPaste(snapshot, tracker);
}

}  // namespace lomaris
