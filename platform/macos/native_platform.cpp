#include "platform/native_platform.h"

#include "platform/macos/accessibility.h"
#include "platform/macos/events.h"
#include "platform/macos/pasteboard.h"
#include "platform/macos/scheduling.h"
#include "platform/macos/workspace.h"

namespace lomaris {

namespace {

class MacOSPlatform final : public Platform {
public:
    explicit MacOSPlatform(ProcessRole role) {
        if (role == ProcessRole::tool) {
            scheduling_.termination().catchSignals();
        }
    }
    MacOSPlatform(const MacOSPlatform&) = delete;
    MacOSPlatform& operator=(const MacOSPlatform&) = delete;
    ~MacOSPlatform() override {
        // Ends the blocks first, because they may use any service.
        scheduling_.finish();
        pasteboard_.finish();
        scheduling_.termination().endIfAsked();
    }

    [[nodiscard]] Accessibility& accessibility() override { return accessibility_; }
    [[nodiscard]] Pasteboard& pasteboard() override { return pasteboard_; }
    [[nodiscard]] EventServices& events() override { return events_; }
    [[nodiscard]] Workspace& workspace() override { return workspace_; }
    [[nodiscard]] Scheduling& scheduling() override { return scheduling_; }

private:
    macos::MacOSScheduling scheduling_{[this] { pasteboard_.finish(); }};
    macos::MacOSAccessibility accessibility_;
    macos::MacOSEventServices events_;
    macos::MacOSWorkspace workspace_{scheduling_};
    macos::MacOSPasteboard pasteboard_{scheduling_};
};

}  // namespace

std::unique_ptr<Platform> nativePlatform(ProcessRole role, const std::string& /*clipboardKeeper*/) {
    return std::make_unique<MacOSPlatform>(role);
}

}  // namespace lomaris
