// The contract suites on the macOS that runs the tests. Tests that lack a permission are skipped with a message.

#include "platform/native_platform.h"
#include "tests/macos_native/kept_clipboard.h"
#include "tests/macos_native/other_program.h"
#include "tests/macos_native/text_edit.h"
#include "tests/platform/accessibility_contract.h"
#include "tests/platform/events_contract.h"
#include "tests/platform/pasteboard_contract.h"
#include "tests/platform/scheduling_contract.h"
#include "tests/platform/workspace_contract.h"
#include "tests/support/waiting.h"

#include <functional>
#include <iostream>
#include <limits>
#include <stdexcept>

namespace lomaris::test {
namespace {

class NativeSchedulingWorld final : public SchedulingWorld {
public:
    Platform& platform() override { return *platform_; }

private:
    std::unique_ptr<Platform> platform_ = nativePlatform();
};

class NativePasteboardWorld final : public PasteboardWorld {
public:
    Platform& platform() override { return *platform_; }

    void otherProgramCopies(std::vector<std::pair<PasteboardType, Bytes>> item) override { other_program::copy(item); }

    std::optional<Bytes> otherProgramReads(const PasteboardType& type) override {
        return whileTurning(platform_->scheduling(), [&type] { return other_program::read(type); });
    }

    bool otherProcessHolds() override {
        othersHold_ = other_->pasteboard().tryHold();
        return othersHold_ != nullptr;
    }

    void otherProcessReleases() override { othersHold_.reset(); }

    void endPlatform() override { platform_.reset(); }

private:
    KeptClipboard clipboard_;
    std::unique_ptr<Platform> platform_ = nativePlatform();
    /// A second platform opens the lock file itself, so the lock treats it like another process.
    std::unique_ptr<Platform> other_ = nativePlatform();
    std::unique_ptr<PasteboardHold> othersHold_;
};

/// Posted keys reach a document that belongs to the tests.
class NativeEventsWorld final : public EventsWorld {
public:
    Platform& platform() override { return *platform_; }

    void userTypes() override {
        EventServices& events = platform_->events();
        const std::uint32_t before = events.inputCounter(InputEventType::keyDown);
        other_program::pressHarmlessKey();
        if (!waitFor([&] { return events.inputCounter(InputEventType::keyDown) != before; })) {
            throw std::runtime_error("the session did not see the key");
        }
    }

    // If the user has switched to another application in the meantime, a key could do harm there.
    void prepareForKeys() override { editor_.bringToFront(); }

    bool comesTrue(const std::function<bool()>& isReached) override { return waitFor(isReached); }

private:
    std::unique_ptr<Platform> platform_ = nativePlatform();
    TextEdit editor_{*platform_, "Nothing that anybody needs."};
};

class NativeWorkspaceWorld final : public WorkspaceWorld {
public:
    Platform& platform() override { return *platform_; }
    RunningApplication first() override { return describe(first_); }
    RunningApplication second() override { return describe(second_); }
    ProcessIdentifier missingProcess() override { return std::numeric_limits<ProcessIdentifier>::max(); }
    void bringSecondToFront() override { second_.bringToFront(); }
    void quitFirst() override { first_.end(); }

private:
    static RunningApplication describe(const TextEdit& editor) {
        const pid_t process = editor.processIdentifier();
        return {process, Text(u"com.apple.TextEdit"), other_program::nameOf(process)};
    }

    std::unique_ptr<Platform> platform_ = nativePlatform();
    // The instance that is opened last is frontmost.
    TextEdit second_{*platform_, "Second"};
    TextEdit first_{*platform_, "First"};
};

class NativeAccessibilityWorld final : public AccessibilityWorld {
public:
    NativeAccessibilityWorld() { editor_.select({10, 9}); }

    Platform& platform() override { return *platform_; }
    ProcessIdentifier application() override { return editor_.processIdentifier(); }
    void quitApplication() override { editor_.end(); }

private:
    std::unique_ptr<Platform> platform_ = nativePlatform();
    TextEdit editor_{*platform_, "The quick brown fox"};
};

/// A maker for a world without requirements.
template <typename World, typename NativeWorld>
auto anywhere() {
    return testing::Values(WorldMaker<World>{"MacOS", [] { return std::make_unique<NativeWorld>(); }});
}

/// A maker for a world that controls applications; prints what is missing.
template <typename World, typename NativeWorld>
auto withPermission() {
    return testing::Values(WorldMaker<World>{"TextEdit", []() -> std::unique_ptr<World> {
                                                 const auto missing = missingForTextEdit(*nativePlatform());
                                                 if (!missing.empty()) {
                                                     std::cerr << missing << '\n';
                                                     return nullptr;
                                                 }
                                                 return std::make_unique<NativeWorld>();
                                             }});
}

INSTANTIATE_TEST_SUITE_P(Native, SchedulingContract, (anywhere<SchedulingWorld, NativeSchedulingWorld>()),
                         contractParamName);
INSTANTIATE_TEST_SUITE_P(Native, PasteboardContract, (anywhere<PasteboardWorld, NativePasteboardWorld>()),
                         contractParamName);
INSTANTIATE_TEST_SUITE_P(Native, EventsContract, (withPermission<EventsWorld, NativeEventsWorld>()), contractParamName);
INSTANTIATE_TEST_SUITE_P(Native, WorkspaceContract, (withPermission<WorkspaceWorld, NativeWorkspaceWorld>()),
                         contractParamName);
INSTANTIATE_TEST_SUITE_P(Native, AccessibilityContract,
                         (withPermission<AccessibilityWorld, NativeAccessibilityWorld>()), contractParamName);

}  // namespace
}  // namespace lomaris::test
