#include "accessibility/adapter/direct_selection.h"

#include "accessibility/adapter/clipboard_selection.h"
#include "accessibility/adapter/focused_element.h"
#include "accessibility/adapter/selection_data.h"
#include "accessibility/adapter/selection_policies.h"
#include "accessibility/adapter/text_context.h"
#include "accessibility/model/capture_trace.h"
#include "platform/attributes.h"

#include <optional>
#include <utility>
#include <variant>

namespace lomaris {

namespace {

struct ElementSelection {
    Element element;
    SelectionData data;
};

/// Searches the application's tree for a text element. Uses a new application element, as the first may be invalid by
/// now.
std::optional<Element> findInTree(Accessibility& accessibility, const std::optional<RunningApplication>& application) {
    if (!application) {
        return std::nullopt;
    }
    return findFocusedTextDescendant(accessibility, accessibility.applicationElement(application->processIdentifier));
}

Outcome<ElementSelection> readElement(Accessibility& accessibility, const Element& element) {
    auto data = tryReadSelectionData(accessibility, element);
    if (const BridgeError* const error = errorOf(data)) {
        return *error;
    }
    return ElementSelection{element, std::get<SelectionData>(std::move(data))};
}

bool hasText(const Outcome<ElementSelection>& outcome) {
    const auto* const selection = std::get_if<ElementSelection>(&outcome);
    return selection != nullptr && !selection->data.text.empty();
}

/// Reads the focused element. If it fails or has no selected text, reads the element found in the application's tree.
/// If both fail, returns the error of the second. If only the second fails, the empty selection of the first counts.
Outcome<ElementSelection> readWithSecondChance(Accessibility& accessibility, const FocusedElement& focused) {
    auto first = readElement(accessibility, focused.element);
    if (hasText(first)) {
        return first;
    }
    const auto found = findInTree(accessibility, focused.application);
    if (!found) {
        return first;
    }
    auto second = readElement(accessibility, *found);
    if (errorOf(first) != nullptr || hasText(second)) {
        return second;
    }
    return first;
}

bool isWritable(Accessibility& accessibility, const Element& element) {
    const SettableAnswer answer = accessibility.isAttributeSettable(element, attribute::selectedText);
    return answer.error == AXError::success && answer.settable;
}

/// Reads web content by copying; accessibility only reports that a selection exists.
Outcome<SelectionSnapshot> readWebContent(Platform& platform, KeyboardClipboardFallback& fallback,
                                          const std::optional<RunningApplication>& application,
                                          const SelectionReadOptions& options, SelectionPurpose purpose) {
    SelectionCaptureTrace& trace = SelectionCaptureTrace::shared();
    trace.record(SelectionCaptureTrace::Route::clipboardForWebContent);
    trace.recordWebContent();
    const auto copyCommand = findCopyCommandWithRetry(platform, application);
    return tryReadSelectionWithKeyboardClipboardFallback(platform, fallback, application,
                                                         options.allowClipboardFallback, purpose, copyCommand);
}

}  // namespace

SelectionSnapshot readDirectSelection(Platform& platform, KeyboardClipboardFallback& fallback,
                                      const SelectionReadOptions& options, SelectionPurpose purpose) {
    return valueOrThrow(tryReadDirectSelection(platform, fallback, options, purpose));
}

Outcome<SelectionSnapshot> tryReadDirectSelection(Platform& platform, KeyboardClipboardFallback& fallback,
                                                  const SelectionReadOptions& options, SelectionPurpose purpose) {
    Accessibility& accessibility = platform.accessibility();
    if (!accessibility.isProcessTrusted(TrustPrompt::none)) {
        return BridgeError::accessibilityPermissionRequired();
    }
    auto focus = tryFocusedElement(platform);
    if (const BridgeError* const error = errorOf(focus)) {
        return *error;
    }
    auto& focused = std::get<FocusedElement>(focus);
    auto read = readWithSecondChance(accessibility, focused);
    if (const BridgeError* const error = errorOf(read)) {
        return *error;
    }
    auto& selection = std::get<ElementSelection>(read);
    if (selection.data.text.empty()) {
        return BridgeError::noTextSelected();
    }
    std::optional<RunningApplication> application = std::move(focused.application);
    const auto bundleIdentifier = application ? application->bundleIdentifier : std::nullopt;
    if (purpose == SelectionPurpose::shortcut &&
        !ShortcutSelectionPolicy::isGenuineTextSelection(bundleIdentifier, selection.data.text, selection.data.range)) {
        return BridgeError::noTextSelected();
    }
    if (WebContentCompatibility::requiresClipboard(bundleIdentifier)) {
        return readWebContent(platform, fallback, application, options, purpose);
    }
    SelectionCaptureTrace::shared().record(SelectionCaptureTrace::Route::direct);

    auto context = TextContext::extract(selection.data.fullText, selection.data.range, options.limits)
                       .value_or(ExtractedContext());
    const ProcessIdentifier processIdentifier = accessibility.processIdentifier(selection.element).value_or(0);
    if (!application) {
        application = platform.workspace().runningApplication(processIdentifier);
    }
    const bool writable = isWritable(accessibility, selection.element);
    if (!writable && !options.allowClipboardFallback) {
        return BridgeError::clipboardFallbackDisabled();
    }

    SelectionPayload payload;
    if (application) {
        payload.applicationName = std::move(application->localizedName);
        payload.bundleIdentifier = std::move(application->bundleIdentifier);
    }
    payload.processIdentifier = processIdentifier;
    payload.selectedText = std::move(selection.data.text);
    payload.contextBefore = std::move(context.before);
    payload.contextAfter = std::move(context.after);
    payload.selectedRange = selection.data.range;
    payload.inputActivity = sampleInputActivity(platform.events());
    payload.supportsDirectReplacement = writable;
    payload.selectionMethod = selection_method::accessibility;
    return SelectionSnapshot{
        std::move(selection.element), std::move(payload),
        writable ? ReplacementStrategy::directAccessibility : ReplacementStrategy::keyboardClipboard};
}

}  // namespace lomaris
