#pragma once

#include "accessibility/adapter/selection_purpose.h"
#include "accessibility/model/selection.h"
#include "platform/platform.h"

namespace lomaris {

/// Reads the selection of the application in front: decides why and how, and keeps what the routes share. Main thread;
/// every operation is synchronous. Borrows the platform, which must outlive it.
class MacOSAccessibilityAdapter {
public:
    using SelectionPurpose = lomaris::SelectionPurpose;

    explicit MacOSAccessibilityAdapter(Platform& platform) : platform_(platform) {}

    /// Reads the selection, and records in the capture trace which route was taken and what went wrong. Throws
    /// `BridgeError`.
    [[nodiscard]] SelectionSnapshot readSelection(const SelectionReadOptions& options);

    [[nodiscard]] Platform& platform() { return platform_; }

private:
    Platform& platform_;
};

}  // namespace lomaris
