#pragma once

#include "platform/platform.h"
#include "tests/platform/contract_suite.h"

namespace lomaris::test {

/// The world in which the accessibility contract is watched: this process is trusted; an application with a window is
/// in front; its focused element is a writable text area with the text "The quick brown fox", of which "brown fox" is
/// selected; the application says so itself ("AXFocusedUIElement", "AXFocusedWindow") and so does the system-wide
/// element; the text area can be reached from the window through "AXChildren".
class AccessibilityWorld {
public:
    virtual ~AccessibilityWorld() = default;

    virtual Platform& platform() = 0;
    /// The application in front.
    virtual ProcessIdentifier application() = 0;
    /// Ends the application; returns once it is gone.
    virtual void quitApplication() = 0;
};

using AccessibilityWorldMaker = WorldMaker<AccessibilityWorld>;

class AccessibilityContract : public ContractSuite<AccessibilityWorld> {
protected:
    Accessibility& accessibility() { return world().platform().accessibility(); }
    Element application() { return accessibility().applicationElement(world().application()); }
    /// The focused element of the application; throws where there is none.
    Element text();
    /// The focused window of the application; throws where there is none.
    Element window();
};

}  // namespace lomaris::test
