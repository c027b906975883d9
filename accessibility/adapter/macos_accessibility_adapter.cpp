#include "accessibility/adapter/macos_accessibility_adapter.h"

#include "accessibility/adapter/clipboard_selection.h"
#include "accessibility/adapter/direct_selection.h"
#include "accessibility/adapter/selection_diagnostics.h"
#include "accessibility/adapter/selection_policies.h"
#include "accessibility/model/capture_trace.h"
#include "accessibility/model/read_failure.h"

#include <utility>

namespace lomaris {

namespace {

bool isDisabled(const std::optional<CopyCommand>& command) { return command && command->isEnabled == false; }

SelectionCaptureTrace::CopyItem copyItemOf(const std::optional<CopyCommand>& command) {
    using enum SelectionCaptureTrace::CopyItem;
    if (!command) {
        return notFound;
    }
    return isDisabled(command) ? disabled : usable;
}

}  // namespace

MacOSAccessibilityAdapter::MacOSAccessibilityAdapter(Platform& platform)
    : MacOSAccessibilityAdapter(std::shared_ptr<Platform>(std::shared_ptr<void>(), &platform)) {}

MacOSAccessibilityAdapter::MacOSAccessibilityAdapter(std::shared_ptr<Platform> platform)
    : platform_(std::move(platform)), keyboardClipboardFallback_(*platform_) {}

SelectionSnapshot MacOSAccessibilityAdapter::readSelection(const SelectionReadOptions& options,
                                                           SelectionPurpose purpose) {
    return valueOrThrow(tryReadSelection(options, purpose));
}

Outcome<SelectionSnapshot> MacOSAccessibilityAdapter::tryReadSelection(const SelectionReadOptions& options,
                                                                       SelectionPurpose purpose) {
    // A read may copy twice. No other operation may use the clipboard in between.
    const auto scope = operation();
    const auto application = platform_->workspace().frontmostApplication();
    if (purpose == SelectionPurpose::shortcut && application &&
        ShortcutSelectionPolicy::isFileManager(application->bundleIdentifier)) {
        return BridgeError::noTextSelected();
    }
    auto read = tryReadDirectSelection(*platform_, keyboardClipboardFallback_, options, purpose);
    const BridgeError* const error = errorOf(read);
    return error == nullptr ? std::move(read) : readAfterFailure(*error, application, options, purpose);
}

Outcome<SelectionSnapshot> MacOSAccessibilityAdapter::readAfterFailure(
    const BridgeError& error, const std::optional<RunningApplication>& application, const SelectionReadOptions& options,
    SelectionPurpose purpose) {
    SelectionCaptureTrace& trace = SelectionCaptureTrace::shared();
    const ReadFailure failure = readFailureOf(error);
    const bool lookForCopyCommand = purpose != SelectionPurpose::standard && maySelectWithoutShowing(failure);
    std::optional<CopyCommand> copyCommand;
    if (lookForCopyCommand) {
        copyCommand = findCopyCommandWithRetry(*platform_, application);
    }
    trace.record(failure);
    if (lookForCopyCommand) {
        trace.record(copyItemOf(copyCommand));
    }
    if (!maySelectWithoutShowing(failure)) {
        return error;
    }
    const bool nothingToCopy = failure == ReadFailure::noTextSelected && isDisabled(copyCommand);
    if (nothingToCopy && purpose == SelectionPurpose::shortcut) {
        return error;
    }
    trace.record(SelectionCaptureTrace::Route::clipboardAfterFailure);
    if (isDisabled(copyCommand)) {
        copyCommand.reset();
    }
    return tryReadSelectionWithKeyboardClipboardFallback(*platform_, keyboardClipboardFallback_, application,
                                                         options.allowClipboardFallback, purpose, copyCommand);
}

void MacOSAccessibilityAdapter::replaceSelection(const SelectionSnapshot& snapshot, TextView replacement,
                                                 const ReplacementOptions& options) {
    lomaris::replaceSelection(*platform_, keyboardClipboardFallback_, snapshot, replacement, options);
}

AccessibilityDiagnosticPayload MacOSAccessibilityAdapter::diagnoseSelection() {
    return lomaris::diagnoseSelection(*platform_);
}

}  // namespace lomaris
