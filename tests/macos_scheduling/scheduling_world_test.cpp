// The scheduling contract on the implementation for macOS.

#include "platform/macos/scheduling.h"
#include "tests/macos_scheduling/fake_run_loop.h"
#include "tests/platform/scheduling_contract.h"

#include <memory>
#include <stdexcept>

namespace lomaris::test {
namespace {

/// A platform that has only the scheduling service.
class SchedulingAlone final : public Platform {
public:
    ~SchedulingAlone() override {
        scheduling_.finish();
        fake_run_loop::reset();
    }

    [[nodiscard]] Accessibility& accessibility() override { throw std::logic_error("there is only time here"); }
    [[nodiscard]] Pasteboard& pasteboard() override { throw std::logic_error("there is only time here"); }
    [[nodiscard]] EventServices& events() override { throw std::logic_error("there is only time here"); }
    [[nodiscard]] Workspace& workspace() override { throw std::logic_error("there is only time here"); }
    [[nodiscard]] Scheduling& scheduling() override { return scheduling_; }

private:
    macos::MacOSScheduling scheduling_;
};

class MacOSSchedulingWorld final : public SchedulingWorld {
public:
    Platform& platform() override { return platform_; }

private:
    SchedulingAlone platform_;
};

INSTANTIATE_TEST_SUITE_P(MacOS, SchedulingContract,
                         testing::Values(SchedulingWorldMaker{"FakeRunLoop",
                                                              [] { return std::make_unique<MacOSSchedulingWorld>(); }}),
                         contractParamName);

}  // namespace
}  // namespace lomaris::test
