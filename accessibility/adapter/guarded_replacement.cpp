#include "accessibility/adapter/attribute_access.h"
#include "accessibility/adapter/macos_accessibility_adapter.h"
#include "accessibility/model/guard_trace.h"
#include "accessibility/model/read_failure.h"
#include "text/characters.h"
#include "text/equality.h"

#include <exception>
#include <optional>
#include <utility>
#include <variant>

namespace lomaris {

namespace {

using Reason = ReplacementGuardTrace::Reason;

[[noreturn]] void refuse(const ReplacementGuardTrace::Refusal& refusal) {
    ReplacementGuardTrace::shared().record(refusal);
    throw BridgeError::selectionChanged();
}

/// True if both are absent, or both are present and equal.
bool sameIdentifier(const std::optional<Text>& one, const std::optional<Text>& other) {
    if (!one || !other) {
        return one.has_value() == other.has_value();
    }
    return canonicallyEqual(*one, *other);
}

bool isExpectedInFront(const RunningApplication& application, const GuardedReplacementRequest& request) {
    if (application.processIdentifier != request.expectedProcessIdentifier) {
        return false;
    }
    return !request.expectedBundleIdentifier ||
           sameIdentifier(application.bundleIdentifier, request.expectedBundleIdentifier);
}

/// True if the selection is still in the expected place, as far as can be determined. If both ranges are known, they
/// must be equal; otherwise there must have been no user input. If neither is known and the replacement has to be
/// pasted, that is not required either: the selection was usually copied, and the copy itself changes the input
/// counters.
bool standsAsExpected(const SelectionSnapshot& current, const GuardedReplacementRequest& request,
                      bool activityIsUnchanged) {
    const auto& range = current.payload.selectedRange;
    if (request.expectedSelectedRange && range) {
        return *range == *request.expectedSelectedRange;
    }
    if (!request.expectedSelectedRange && current.replacementStrategy == ReplacementStrategy::keyboardClipboard &&
        !range) {
        return true;
    }
    return activityIsUnchanged;
}

}  // namespace

void MacOSAccessibilityAdapter::replaceSelectionIfCurrent(const GuardedReplacementRequest& request,
                                                          const SelectionReadOptions& options) {
    const auto scope = operation();
    // Sampled first: the keys that the steps below post also change the counters.
    const bool activityIsUnchanged = sampleInputActivity(platform_->events()) == request.expectedInputActivity;
    ReplacementGuardTrace::shared().reset();

    const auto application = platform_->workspace().frontmostApplication();
    if (!application || !isExpectedInFront(*application, request)) {
        refuse({.reason = Reason::notFrontmost});
    }
    raiseFocusedWindow(*platform_, application->processIdentifier);

    const SelectionSnapshot current = readAgain(options);
    if (current.payload.processIdentifier != application->processIdentifier ||
        !sameIdentifier(current.payload.bundleIdentifier, request.expectedBundleIdentifier)) {
        refuse({.reason = Reason::applicationChanged});
    }
    if (!canonicallyEqual(current.payload.selectedText, request.expectedText)) {
        refuse({.reason = Reason::textChanged,
                .expectedCharacters = characterCount(request.expectedText),
                .currentCharacters = characterCount(current.payload.selectedText)});
    }
    if (!standsAsExpected(current, request, activityIsUnchanged)) {
        refuse({.reason = Reason::activityOrRange});
    }

    const bool wasJustCopied = current.replacementStrategy == ReplacementStrategy::keyboardClipboard;
    replaceSelection(current, request.replacementText,
                     {.allowClipboardFallback = options.allowClipboardFallback, .justVerified = wasJustCopied});
}

SelectionSnapshot MacOSAccessibilityAdapter::readAgain(const SelectionReadOptions& options) {
    std::optional<Outcome<SelectionSnapshot>> current;
    try {
        current = tryReadSelection(options, SelectionPurpose::guardedReplacement);
    } catch (const std::exception&) {
        refuse({.reason = Reason::rereadFailed, .error = ReadFailure::other});
    }
    if (const BridgeError* const error = errorOf(*current)) {
        refuse({.reason = Reason::rereadFailed, .error = readFailureOf(*error)});
    }
    return std::get<SelectionSnapshot>(std::move(*current));
}

}  // namespace lomaris
