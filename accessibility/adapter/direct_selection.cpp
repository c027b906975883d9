#include "accessibility/adapter/direct_selection.h"

#include "accessibility/adapter/clipboard_selection.h"
#include "accessibility/adapter/focused_element.h"
#include "accessibility/adapter/selection_data.h"
#include "accessibility/adapter/selection_policies.h"
#include "accessibility/adapter/text_context.h"
#include "accessibility/model/bridge_error.h"
#include "accessibility/model/capture_trace.h"
#include "platform/attributes.h"

#include <utility>

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

/// Reads the focused element. If it fails or has no selected text, reads the element found in the application's tree.
/// If both fail, throws the error of the second.
ElementSelection readWithSecondChance(Accessibility& accessibility, const FocusedElement& focused) {
    ElementSelection selection{focused.element, {}};
    try {
        selection.data = readSelectionData(accessibility, focused.element);
    } catch (const BridgeError&) {
        const auto found = findInTree(accessibility, focused.application);
        if (!found) {
            throw;
        }
        return {*found, readSelectionData(accessibility, *found)};
    }
    if (!selection.data.text.empty()) {
        return selection;
    }
    if (const auto found = findInTree(accessibility, focused.application)) {
        try {
            ElementSelection second{*found, readSelectionData(accessibility, *found)};
            if (!second.data.text.empty()) {
                return second;
            }
        } catch (const BridgeError&) {
            // The focused element was readable, so its empty selection is the result.
        }
    }
    return selection;
}

bool isWritable(Accessibility& accessibility, const Element& element) {
    const SettableAnswer answer = accessibility.isAttributeSettable(element, attribute::selectedText);
    return answer.error == AXError::success && answer.settable;
}

/// Reads web content by copying; accessibility only reports that a selection exists.
SelectionSnapshot readWebContent(Platform& platform, KeyboardClipboardFallback& fallback,
                                 const std::optional<RunningApplication>& application,
                                 const SelectionReadOptions& options, SelectionPurpose purpose) {
    SelectionCaptureTrace& trace = SelectionCaptureTrace::shared();
    trace.record(SelectionCaptureTrace::Route::clipboardForWebContent);
    trace.recordWebContent();
    const auto copyCommand = findCopyCommandWithRetry(platform, application);
    return readSelectionWithKeyboardClipboardFallback(platform, fallback, application, options.allowClipboardFallback,
                                                      purpose, copyCommand);
}

}  // namespace

SelectionSnapshot readDirectSelection(Platform& platform, KeyboardClipboardFallback& fallback,
                                      const SelectionReadOptions& options, SelectionPurpose purpose) {
    Accessibility& accessibility = platform.accessibility();
    if (!accessibility.isProcessTrusted(TrustPrompt::none)) {
        throw BridgeError::accessibilityPermissionRequired();
    }
    FocusedElement focused = focusedElement(platform);
    ElementSelection selection = readWithSecondChance(accessibility, focused);
    if (selection.data.text.empty()) {
        throw BridgeError::noTextSelected();
    }
    std::optional<RunningApplication> application = std::move(focused.application);
    const auto bundleIdentifier = application ? application->bundleIdentifier : std::nullopt;
    if (purpose == SelectionPurpose::shortcut &&
        !ShortcutSelectionPolicy::isGenuineTextSelection(bundleIdentifier, selection.data.text, selection.data.range)) {
        throw BridgeError::noTextSelected();
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
        throw BridgeError::clipboardFallbackDisabled();
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
    return {std::move(selection.element), std::move(payload),
            writable ? ReplacementStrategy::directAccessibility : ReplacementStrategy::keyboardClipboard};
}

}  // namespace lomaris
