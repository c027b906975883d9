#pragma once

#include "platform/platform.h"
#include "tests/platform/contract_suite.h"

namespace lomaris::test {

/// The world of the accessibility contract. This process is trusted. An application with a window is frontmost. Its
/// focused element is a settable text area with the text "The quick brown fox", of which "brown fox" is selected. Both
/// the application ("AXFocusedUIElement", "AXFocusedWindow") and the system-wide element report it. The text area can
/// be reached from the window through "AXChildren".
class AccessibilityWorld {
public:
    virtual ~AccessibilityWorld() = default;

    virtual Platform& platform() = 0;
    /// The frontmost application.
    virtual ProcessIdentifier application() = 0;
    /// Ends the application; returns once it has ended.
    virtual void quitApplication() = 0;
};

using AccessibilityWorldMaker = WorldMaker<AccessibilityWorld>;

/// What every platform must guarantee for `Accessibility`.
class AccessibilityContract : public ContractSuite<AccessibilityWorld> {
protected:
    Accessibility& accessibility() { return world().platform().accessibility(); }
    Element application() { return accessibility().applicationElement(world().application()); }
    /// The focused element of the application; throws if there is none.
    Element text();
    /// The focused window of the application; throws if there is none.
    Element window();
};

}  // namespace lomaris::test
