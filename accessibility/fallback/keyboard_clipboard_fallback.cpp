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
#include <variant>

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

/// Presses the menu item if there is one; if there is none or that fails, presses the key.
Outcome<CopyMethod> pressCopy(Platform& platform, std::optional<ProcessIdentifier> target,
                              const CopyItemPress& pressCopyItem) {
    // The error of the menu item is dropped, because the key is tried instead.
    if (pressCopyItem && !pressCopyItem()) {
        SelectionCaptureTrace::shared().increment(SelectionCaptureTrace::Key::menuPresses);
        return CopyMethod::menu;
    }
    if (const auto error = tryPostKey(platform, key_stroke::copy, target)) {
        return *error;
    }
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

BridgeError clipboardInUse() {
    return BridgeError::clipboardFallbackFailed(u"another operation kept the clipboard in use for 10 seconds");
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
    CopyItemPress pressCopyItem;
    if (copyCommand) {
        pressCopyItem = [&copyCommand]() -> std::optional<BridgeError> {
            try {
                copyCommand();
                return std::nullopt;
            } catch (const BridgeError& error) {
                return error;
            }
        };
    }
    return valueOrThrow(tryReadSelectedText(targetProcessIdentifier, policy, pressCopyItem));
}

Outcome<Text> KeyboardClipboardFallback::tryReadSelectedText(std::optional<ProcessIdentifier> targetProcessIdentifier,
                                                             ClipboardSelectionReadPolicy policy,
                                                             const CopyItemPress& pressCopyItem) {
    Pasteboard& pasteboard = platform_.pasteboard();
    const auto scope = operation();
    const auto snapshot = hold_.saveClipboard();
    if (!snapshot) {
        return clipboardInUse();
    }
    const ClipboardRestore restore(platform_, *snapshot);
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
        const auto pressed = pressCopy(platform_, targetProcessIdentifier, byKey ? CopyItemPress() : pressCopyItem);
        if (const BridgeError* const error = errorOf(pressed)) {
            return *error;
        }
        const auto method = std::get<CopyMethod>(pressed);
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
            return BridgeError::noTextSelected();
        }
    }
    return changedWithoutText ? BridgeError::noTextSelected() : noResponse(attempts);
}

void KeyboardClipboardFallback::replaceSelectedText(TextView text,
                                                    std::optional<ProcessIdentifier> targetProcessIdentifier) {
    Pasteboard& pasteboard = platform_.pasteboard();
    const auto scope = operation();
    auto saved = hold_.saveClipboard();
    if (!saved) {
        throw clipboardInUse();
    }
    // Shared, as the blocks that carry it to the restore are copied on their way.
    const auto snapshot = std::make_shared<const PasteboardSnapshot>(std::move(*saved));
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
