#include "accessibility/service/app_selection_session.h"

#include <utility>

namespace lomaris {

namespace {

/// For the repeated read. The result does not depend on them.
constexpr ContextLimits contextLimits{.before = 500, .after = 500};

AppSelectionDetails detailsOf(const SelectionSnapshot& snapshot) {
    const SelectionPayload& payload = snapshot.payload;
    return {.applicationName = payload.applicationName.value_or(Text()),
            .selectedText = payload.selectedText,
            .contextBefore = payload.contextBefore,
            .contextAfter = payload.contextAfter,
            .selectionMethod = payload.selectionMethod,
            .usesClipboardFallback = snapshot.replacementStrategy == ReplacementStrategy::keyboardClipboard};
}

}  // namespace

AppSelectionSession::AppSelectionSession(std::shared_ptr<MacOSAccessibilityAdapter> adapter, SelectionSnapshot snapshot,
                                         bool allowClipboardFallback)
    : details_(detailsOf(snapshot)),
      adapter_(std::move(adapter)),
      snapshot_(std::move(snapshot)),
      allowClipboardFallback_(allowClipboardFallback),
      expectedInputActivity_(snapshot_.payload.inputActivity) {}

void AppSelectionSession::markSubmitted() {
    expectedInputActivity_ = sampleInputActivity(adapter_->platform().events());
}

void AppSelectionSession::replaceIfCurrent(TextView text) {
    const SelectionPayload& payload = snapshot_.payload;
    const GuardedReplacementRequest request{.expectedText = payload.selectedText,
                                            .expectedProcessIdentifier = payload.processIdentifier,
                                            .expectedBundleIdentifier = payload.bundleIdentifier,
                                            .expectedSelectedRange = payload.selectedRange,
                                            .expectedInputActivity = expectedInputActivity_,
                                            .replacementText = Text(text)};
    adapter_->replaceSelectionIfCurrent(request,
                                        {.limits = contextLimits, .allowClipboardFallback = allowClipboardFallback_});
}

}  // namespace lomaris
