#include "platform/linux/atspi/accessibility_bus.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace lomaris::test {
namespace {

class SessionBusAddresses : public testing::Test {
protected:
    void SetUp() override { unset(); }
    void TearDown() override { unset(); }

private:
    static void unset() {
        unsetenv("DBUS_SESSION_BUS_ADDRESS");
        unsetenv("XDG_RUNTIME_DIR");
    }
};

TEST_F(SessionBusAddresses, UseTheVariableIfSet) {
    setenv("XDG_RUNTIME_DIR", "/run/user/1000", 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/a;unix:path=/b", 1);
    EXPECT_EQ(sessionBusAddresses(), "unix:path=/a;unix:path=/b");
}

TEST_F(SessionBusAddresses, UseTheRuntimeDirectoryOtherwise) {
    setenv("XDG_RUNTIME_DIR", "/run/user/1000", 1);
    EXPECT_EQ(sessionBusAddresses(), "unix:path=/run/user/1000/bus");
    setenv("DBUS_SESSION_BUS_ADDRESS", "", 1);
    EXPECT_EQ(sessionBusAddresses(), "unix:path=/run/user/1000/bus");
}

TEST_F(SessionBusAddresses, AreEmptyWithoutBoth) {
    EXPECT_EQ(sessionBusAddresses(), "");
    setenv("XDG_RUNTIME_DIR", "", 1);
    EXPECT_EQ(sessionBusAddresses(), "");
}

TEST_F(SessionBusAddresses, EscapeReservedBytes) {
    setenv("XDG_RUNTIME_DIR", "/azAZ09-_.\\* ,;=%:\xc3\xbf", 1);
    EXPECT_EQ(sessionBusAddresses(), "unix:path=/azAZ09-_.\\*%20%2c%3b%3d%25%3a%c3%bf/bus");
}

}  // namespace
}  // namespace lomaris::test
