#pragma once

#include "accessibility/adapter/macos_accessibility_adapter.h"
#include "accessibility/model/selection.h"

#include <memory>

namespace lomaris {

/// What a host shows its user of a captured selection.
struct AppSelectionDetails {
    /// Localized name of the application; empty where it has none.
    Text applicationName;
    Text selectedText;
    /// Text around the selection, at most the limits of the capture in UTF-16 units.
    Text contextBefore;
    Text contextAfter;
    /// One of `selection_method`.
    Text selectionMethod;
    /// Whether a replacement will be pasted rather than written into the element.
    bool usesClipboardFallback = false;

    friend bool operator==(const AppSelectionDetails&, const AppSelectionDetails&) = default;
};

/// One captured selection, to be replaced later if nothing has changed since. Made by the captures of
/// `LomarisAccessibilityService`; lives on after the service, whose adapter it shares. Main thread.
class AppSelectionSession {
public:
    AppSelectionSession(const AppSelectionSession&) = delete;
    AppSelectionSession& operator=(const AppSelectionSession&) = delete;
    ~AppSelectionSession() = default;

    [[nodiscard]] const AppSelectionDetails& details() const { return details_; }

    /// Takes the user's input up to now for expected. To be called when the user submits what will lead to the
    /// replacement; without it, input since the capture counts. It matters where an element that can be read does not
    /// tell its range. May be called again.
    void markSubmitted();

    /// Replaces the captured selection with `text`, only if it is still the same; may be tried any number of times.
    /// After a paste the main queue restores the user's clipboard; a further try before that first waits until the target
    /// has read the pasted text, 2.5 s at most. Throws
    /// `BridgeError`: `selectionChanged` where anything is not as it was (`ReplacementGuardTrace` says what, unless it
    /// showed only in the last look before the write), or that of the write. The text is not checked for emptiness.
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
