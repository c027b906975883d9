#include <gtest/gtest.h>

#include <cstdlib>

namespace lomaris::test {
namespace {

/// Keys that tests press must never reach the desktop of the person who runs them.
class PrivateDesktopOnly : public testing::Environment {
public:
    void SetUp() override {
        ASSERT_NE(std::getenv("LOMARIS_VIRTUAL_DESKTOP"), nullptr)
            << "these tests press keys; run them through tools/virtual-desktop";
    }
};

const auto* const environment = testing::AddGlobalTestEnvironment(new PrivateDesktopOnly);

}  // namespace
}  // namespace lomaris::test
