#include "platform/native_platform.h"

#include "platform/linux/atspi/linux_accessibility.h"
#include "platform/linux/process/linux_scheduling.h"
#include "platform/linux/x11/clipboard/keeper_process.h"
#include "platform/linux/x11/clipboard/linux_pasteboard.h"
#include "platform/linux/x11/keyboard/linux_events.h"
#include "platform/linux/x11/linux_workspace.h"
#include "platform/linux/x11/window_activation.h"
#include "platform/linux/x11/x11_connection.h"

namespace lomaris {

namespace {

KeeperStart keeperStart(ProcessRole role, const std::string& program) {
    if (role == ProcessRole::tool) {
        return forkKeeper;
    }
    return [program] { return spawnKeeper(keeperProgram(program)); };
}

class LinuxPlatform final : public Platform {
public:
    LinuxPlatform(ProcessRole role, const std::string& clipboardKeeper)
        : pasteboard_(scheduling_, keeperStart(role, clipboardKeeper),
                      [this](bool isProtected) { scheduling_.termination().setSecondSignalEnds(isProtected); }) {
        if (role == ProcessRole::tool) {
            scheduling_.termination().catchSignals();
        }
    }
    LinuxPlatform(const LinuxPlatform&) = delete;
    LinuxPlatform& operator=(const LinuxPlatform&) = delete;
    ~LinuxPlatform() override {
        // Background blocks end first: they may use any service.
        scheduling_.finishBackgroundBlocks();
        pasteboard_.finish();
        scheduling_.termination().endIfAsked();
    }

    [[nodiscard]] Accessibility& accessibility() override { return *accessibility_; }
    [[nodiscard]] Pasteboard& pasteboard() override { return pasteboard_; }
    [[nodiscard]] EventServices& events() override { return events_; }
    [[nodiscard]] Workspace& workspace() override { return workspace_; }
    [[nodiscard]] Scheduling& scheduling() override { return scheduling_; }

private:
    LinuxScheduling scheduling_{[this] { pasteboard_.finish(); }};
    X11Connection connection_;
    LinuxWorkspace workspace_{connection_};
    LinuxEvents events_{connection_,
                        [this](ProcessIdentifier process) { return accessibility_->isTerminalFocused(process); }};
    LinuxPasteboard pasteboard_;
    std::unique_ptr<TerminalAwareAccessibility> accessibility_ = makeLinuxAccessibility(
        workspace_,
        [this](ProcessIdentifier process, TextView title) { return activateWindow(connection_, process, title); });
};

}  // namespace

std::unique_ptr<Platform> nativePlatform(ProcessRole role, const std::string& clipboardKeeper) {
    return std::make_unique<LinuxPlatform>(role, clipboardKeeper);
}

}  // namespace lomaris
