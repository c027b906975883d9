#include "platform/native_platform.h"
#include "tests/platform/accessibility_contract.h"
#include "tests/platform/workspace_contract.h"
#include "tests/real/desktop.h"
#include "tests/real/editor.h"
#include "tests/support/waiting.h"

#include <iostream>
#include <stdexcept>
#include <string>

namespace lomaris::test {
namespace {

class RealWorkspaceWorld final : public WorkspaceWorld {
public:
    Platform& platform() override { return *platform_; }

    RunningApplication first() override {
        return {first_.processIdentifier(), Text(u"org.xfce.mousepad"), Text(u"Mousepad")};
    }

    RunningApplication second() override { return {second_.processIdentifier(), std::nullopt, Text(u"FeatherPad")}; }

    // The largest number, which no kernel assigns.
    ProcessIdentifier missingProcess() override { return 0x7fffffff; }

    void bringSecondToFront() override { bringToFront(second_.processIdentifier()); }

    void quitFirst() override {
        const pid_t process = first_.processIdentifier();
        first_.process().end();
        if (!waitFor([process] { return processInFront() != process; })) {
            throw std::runtime_error("the window stayed");
        }
    }

private:
    std::unique_ptr<Platform> platform_ = nativePlatform();
    // The last one is in front.
    Editor second_{featherPad(), "Second"};
    Editor first_{mousepad(), "First"};
};

class RealAccessibilityWorld final : public AccessibilityWorld {
public:
    RealAccessibilityWorld() { editor_.mark(10, 9, "brown fox"); }

    Platform& platform() override { return *platform_; }
    ProcessIdentifier application() override { return editor_.processIdentifier(); }
    void quitApplication() override { editor_.process().end(); }

private:
    std::unique_ptr<Platform> platform_ = nativePlatform();
    Editor editor_{mousepad(), "The quick brown fox"};
};

/// Returns a factory of a world that needs these editors. Prints what is missing, if anything is.
template <typename World, typename RealWorld>
auto onTheDesktop(const std::string& name, const std::vector<EditorProgram>& editors) {
    return testing::Values(WorldMaker<World>{name, [editors]() -> std::unique_ptr<World> {
                                                 for (const EditorProgram& editor : editors) {
                                                     if (const auto missing = missingFor(editor); !missing.empty()) {
                                                         std::cerr << missing << '\n';
                                                         return nullptr;
                                                     }
                                                 }
                                                 return std::make_unique<RealWorld>();
                                             }});
}

INSTANTIATE_TEST_SUITE_P(Real, WorkspaceContract,
                         (onTheDesktop<WorkspaceWorld, RealWorkspaceWorld>("Linux", {mousepad(), featherPad()})),
                         contractParamName);
INSTANTIATE_TEST_SUITE_P(Real, AccessibilityContract,
                         (onTheDesktop<AccessibilityWorld, RealAccessibilityWorld>("Mousepad", {mousepad()})),
                         contractParamName);

}  // namespace
}  // namespace lomaris::test
