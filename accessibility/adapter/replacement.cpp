#include "accessibility/adapter/replacement.h"

#include "accessibility/adapter/selection_data.h"
#include "accessibility/model/bridge_error.h"
#include "platform/attributes.h"
#include "text/equality.h"

namespace lomaris {

namespace {

void replaceDirectly(Accessibility& accessibility, const SelectionSnapshot& snapshot, TextView replacement) {
    if (!snapshot.payload.supportsDirectReplacement) {
        throw BridgeError::directReplacementUnsupported();
    }
    const SelectionData current = readSelectionData(accessibility, snapshot.element);
    if (!canonicallyEqual(current.text, snapshot.payload.selectedText) ||
        current.range != snapshot.payload.selectedRange) {
        throw BridgeError::selectionChanged();
    }
    const AXError error = accessibility.setAttribute(snapshot.element, attribute::selectedText, Text(replacement));
    if (error != AXError::success) {
        throw BridgeError::replacementFailed(error);
    }
}

void replaceByPasting(KeyboardClipboardFallback& fallback, const SelectionPayload& payload, TextView replacement,
                      const ReplacementOptions& options) {
    if (!options.allowClipboardFallback) {
        throw BridgeError::clipboardFallbackDisabled();
    }
    const auto operation = fallback.operation();
    if (!options.justVerified) {
        const Text current =
            fallback.readSelectedText(payload.processIdentifier, ClipboardSelectionReadPolicy::standard, nullptr);
        if (!canonicallyEqual(current, payload.selectedText)) {
            throw BridgeError::selectionChanged();
        }
    }
    fallback.replaceSelectedText(replacement, payload.processIdentifier);
}

}  // namespace

void replaceSelection(Platform& platform, KeyboardClipboardFallback& fallback, const SelectionSnapshot& snapshot,
                      TextView replacement, const ReplacementOptions& options) {
    switch (snapshot.replacementStrategy) {
        case ReplacementStrategy::directAccessibility:
            replaceDirectly(platform.accessibility(), snapshot, replacement);
            return;
        case ReplacementStrategy::keyboardClipboard:
            replaceByPasting(fallback, snapshot.payload, replacement, options);
            return;
    }
}

}  // namespace lomaris
