#pragma once

#include "accessibility/adapter/macos_accessibility_adapter.h"
#include "accessibility/model/selection.h"

#include <memory>

namespace lomaris {

/// The details of a captured selection that a host shows to its user.
struct AppSelectionDetails {
    /// Localized name of the application; empty if it has none.
    Text applicationName;
    Text selectedText;
    /// The text around the selection, limited to the UTF-16 units that the capture requested.
    Text contextBefore;
    Text contextAfter;
    /// One of `selection_method`.
    Text selectionMethod;
    /// True if a replacement will be pasted instead of written into the element.
    bool usesClipboardFallback = false;

    friend bool operator==(const AppSelectionDetails&, const AppSelectionDetails&) = default;
};

/// A captured selection that can be replaced later if it is unchanged. Created by `LomarisAccessibilityService`, which
/// it may outlive; both share the adapter. Main thread.
class AppSelectionSession {
public:
    AppSelectionSession(const AppSelectionSession&) = delete;
    AppSelectionSession& operator=(const AppSelectionSession&) = delete;
    ~AppSelectionSession() = default;

    [[nodiscard]] const AppSelectionDetails& details() const { return details_; }

    /// Accepts all user input so far as expected. Call it when the user submits the request that leads to the
    /// replacement; otherwise all input since the capture counts. Only matters for an element that can be read but does
    /// not report its range. May be called repeatedly.
    void markSubmitted();

    /// Replaces the captured selection by `text` if it is unchanged. May be called repeatedly. After a paste the main
    /// queue restores the user's clipboard; a call before that first waits until the target has read the pasted text,
    /// for up to 2.5 s. Does not check that `text` is not empty.
    ///
    /// Throws `BridgeError`: `selectionChanged` if the selection is not the captured one, with the reason in
    /// `ReplacementGuardTrace` unless only the final check before the write noticed it; or the error of the write.
    void replaceIfCurrent(TextView text);

private:
    friend class LomarisAccessibilityService;

    AppSelectionSession(std::shared_ptr<MacOSAccessibilityAdapter> adapter, SelectionSnapshot snapshot,
                        bool allowClipboardFallback);

    AppSelectionDetails details_;
    std::shared_ptr<MacOSAccessibilityAdapter> adapter_;
    SelectionSnapshot snapshot_;
    bool allowClipboardFallback_;
    InputActivitySnapshot expectedInputActivity_;
};

}  // namespace lomaris
