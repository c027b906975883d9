#include "accessibility/adapter/selection_policies.h"

#include "text/equality.h"

#include <algorithm>
#include <span>

namespace lomaris {

namespace {

bool matches(TextView bundleIdentifier, std::span<const TextView> prefixes) {
    return std::any_of(prefixes.begin(), prefixes.end(),
                       [bundleIdentifier](TextView prefix) { return hasCharacterPrefix(bundleIdentifier, prefix); });
}

}  // namespace

bool ShortcutSelectionPolicy::isFileManager(const std::optional<Text>& bundleIdentifier) {
    return bundleIdentifier && matches(*bundleIdentifier, bundle_prefixes::fileManagerBundlePrefixes);
}

bool ShortcutSelectionPolicy::isGenuineTextSelection(const std::optional<Text>& bundleIdentifier, TextView selectedText,
                                                     const std::optional<TextRange>& selectedRange) {
    if (selectedText.empty()) {
        return false;
    }
    if (!bundleIdentifier) {
        return true;
    }
    if (isFileManager(bundleIdentifier)) {
        return false;
    }
    if (matches(*bundleIdentifier, bundle_prefixes::terminalBundlePrefixes)) {
        return selectedRange && selectedRange->length > 0;
    }
    return true;
}

bool WebContentCompatibility::requiresClipboard(const std::optional<Text>& bundleIdentifier) {
    return bundleIdentifier && (matches(*bundleIdentifier, bundle_prefixes::browserBundlePrefixes) ||
                                matches(*bundleIdentifier, bundle_prefixes::codeEditorBundlePrefixes));
}

}  // namespace lomaris
