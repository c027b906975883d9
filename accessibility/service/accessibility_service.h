#pragma once

#include "accessibility/adapter/macos_accessibility_adapter.h"
#include "platform/platform.h"

#include <cstdint>
#include <memory>
#include <string>

namespace lomaris {

/// The entry points of the library: the permission check, and reading and replacing the selection of the application in
/// front. Each call looks at the front application afresh. Used from one thread at a time, the main thread.
class LomarisAccessibilityService {
public:
    /// On the platform that this build runs on, which the service keeps to itself: nobody turns its run loop after a
    /// call. A host that replaces selections brings its own platform and turns it for 2.5 s after a replacement, so
    /// that a paste is served and the user's clipboard restored.
    LomarisAccessibilityService();
    /// On a platform of the caller's, which must outlive the service; for hosts that share one, and for tests.
    explicit LomarisAccessibilityService(Platform& platform);
    LomarisAccessibilityService(const LomarisAccessibilityService&) = delete;
    LomarisAccessibilityService& operator=(const LomarisAccessibilityService&) = delete;
    ~LomarisAccessibilityService();

    /// Whether this process may use accessibility; with `TrustPrompt::ask` the system asks the user where it may not.
    [[nodiscard]] bool hasPermission(TrustPrompt prompt);

    /// The selected text. Limits in UTF-16 units, as for the JSON; throws `BridgeError`.
    [[nodiscard]] Text readSelectionText(std::int64_t beforeLimit, std::int64_t afterLimit);

    /// The selection with its context as pretty-printed JSON with sorted keys, "/" as it is, without a line feed at the
    /// end. Limits are the UTF-16 units of context wanted on each side. Throws `BridgeError`.
    [[nodiscard]] std::string readSelectionJSON(std::int64_t beforeLimit, std::int64_t afterLimit);

    /// Reads the selection and writes `replacement` over it, if it is still the same a moment later. After a paste the
    /// user's clipboard is restored by the main queue; this returns before. Limits as above. Throws `BridgeError`;
    /// `invalidInput`, before anything is touched, where the replacement is empty.
    void replaceCurrentSelection(TextView replacement, std::int64_t beforeLimit, std::int64_t afterLimit);

private:
    [[nodiscard]] SelectionSnapshot readSelection(std::int64_t beforeLimit, std::int64_t afterLimit);

    /// Set where the service made the platform itself; declared first, so that it outlives the adapter.
    std::unique_ptr<Platform> ownedPlatform_;
    MacOSAccessibilityAdapter adapter_;
};

}  // namespace lomaris
