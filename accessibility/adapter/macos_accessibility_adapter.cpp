#include "accessibility/adapter/macos_accessibility_adapter.h"

#include "accessibility/adapter/direct_selection.h"
#include "accessibility/adapter/selection_policies.h"
#include "accessibility/model/bridge_error.h"
#include "accessibility/model/capture_trace.h"

#include <cstdint>

namespace lomaris {

namespace {

/// What the capture trace says of a failed read.
std::int64_t errorTraceValue(const BridgeError& error) {
    switch (error.errorCase()) {
        case BridgeError::Case::noTextSelected:
            return 1;
        case BridgeError::Case::selectedTextUnavailable:
            return 2;
        case BridgeError::Case::focusedElementUnavailable:
            return 3;
        default:
            return 4;
    }
}

}  // namespace

SelectionSnapshot MacOSAccessibilityAdapter::readSelection(const SelectionReadOptions& options) {
    const auto application = platform_.workspace().frontmostApplication();
    if (options.purpose == SelectionPurpose::shortcut && application &&
        ShortcutSelectionPolicy::isFileManager(application->bundleIdentifier)) {
        throw BridgeError::noTextSelected();
    }
    try {
        return readDirectSelection(platform_, options);
    } catch (const BridgeError& error) {
        SelectionCaptureTrace::shared().record(SelectionCaptureTrace::Key::error, errorTraceValue(error));
        throw;
    }
}

}  // namespace lomaris
