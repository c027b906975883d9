#include "platform/linux/dbus/bus_error.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lomaris {
namespace {

TEST(BusFailure, IsDeterminedByTheErrorName) {
    struct Case {
        std::string name;
        BusFailure failure;
        AXError code;
    };
    const std::string prefix = "org.freedesktop.DBus.Error.";
    const std::vector<Case> cases{
        {prefix + "ServiceUnknown", BusFailure::peerGone, AXError::invalidUIElement},
        {prefix + "NameHasNoOwner", BusFailure::peerGone, AXError::invalidUIElement},
        {prefix + "Disconnected", BusFailure::peerGone, AXError::invalidUIElement},
        {prefix + "NoReply", BusFailure::peerGone, AXError::invalidUIElement},
        {prefix + "UnknownObject", BusFailure::unknownObject, AXError::attributeUnsupported},
        {prefix + "UnknownInterface", BusFailure::unknownObject, AXError::attributeUnsupported},
        {prefix + "UnknownMethod", BusFailure::unsupported, AXError::attributeUnsupported},
        {prefix + "UnknownProperty", BusFailure::unsupported, AXError::attributeUnsupported},
        {prefix + "NotSupported", BusFailure::unsupported, AXError::attributeUnsupported},
        {prefix + "InvalidArgs", BusFailure::unsupported, AXError::attributeUnsupported},
        {prefix + "Failed", BusFailure::refused, AXError::failure},
        {prefix + "AccessDenied", BusFailure::refused, AXError::failure},
        {prefix, BusFailure::refused, AXError::failure},
        {"UnknownMethod", BusFailure::refused, AXError::failure},
        {"org.example.UnknownMethod", BusFailure::refused, AXError::failure},
        {"", BusFailure::refused, AXError::failure},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(busFailureFromName(each.name), each.failure) << each.name;
        EXPECT_EQ(axErrorOf(busFailureFromName(each.name)), each.code) << each.name;
    }
}

}  // namespace
}  // namespace lomaris
