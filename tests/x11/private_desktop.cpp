#include <gtest/gtest.h>

#include <cstdlib>

namespace lomaris::test {
namespace {

/// The keys that the tests press must not reach the desktop of the user who runs them.
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
