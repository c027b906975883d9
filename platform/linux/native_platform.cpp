#include "platform/native_platform.h"

#include "platform/linux/linux_accessibility.h"
#include "platform/linux/linux_events.h"
#include "platform/linux/linux_scheduling.h"
#include "platform/linux/linux_workspace.h"
#include "platform/linux/unavailable_pasteboard.h"
#include "platform/linux/x11_connection.h"

namespace lomaris {

namespace {

class LinuxPlatform final : public Platform {
public:
    // Background blocks end first: they may use any service.
    ~LinuxPlatform() override { scheduling_.finishBackgroundBlocks(); }

    [[nodiscard]] Accessibility& accessibility() override { return *accessibility_; }
    [[nodiscard]] Pasteboard& pasteboard() override { return pasteboard_; }
    [[nodiscard]] EventServices& events() override { return events_; }
    [[nodiscard]] Workspace& workspace() override { return workspace_; }
    [[nodiscard]] Scheduling& scheduling() override { return scheduling_; }

private:
    LinuxScheduling scheduling_;
    X11Connection connection_;
    LinuxWorkspace workspace_{connection_};
    LinuxEvents events_{connection_};
    UnavailablePasteboard pasteboard_;
    std::unique_ptr<Accessibility> accessibility_ = makeLinuxAccessibility(workspace_);
};

}  // namespace

std::unique_ptr<Platform> nativePlatform() { return std::make_unique<LinuxPlatform>(); }

}  // namespace lomaris
