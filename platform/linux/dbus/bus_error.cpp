#include "platform/linux/dbus/bus_error.h"

#include <algorithm>
#include <array>

namespace lomaris {

namespace {

struct NamedFailure {
    std::string_view name;
    BusFailure failure;
};

constexpr std::string_view prefix = "org.freedesktop.DBus.Error.";

/// The bus sends `NoReply` when the peer disconnects before it replies. A missed deadline of ours is no error reply.
constexpr std::array<NamedFailure, 10> namedFailures{{
    {"ServiceUnknown", BusFailure::peerGone},
    {"NameHasNoOwner", BusFailure::peerGone},
    {"Disconnected", BusFailure::peerGone},
    {"NoReply", BusFailure::peerGone},
    {"UnknownObject", BusFailure::unknownObject},
    {"UnknownInterface", BusFailure::unknownObject},
    {"UnknownMethod", BusFailure::unsupported},
    {"UnknownProperty", BusFailure::unsupported},
    {"NotSupported", BusFailure::unsupported},
    {"InvalidArgs", BusFailure::unsupported},
}};

}  // namespace

BusFailure busFailureFromName(std::string_view name) {
    if (!name.starts_with(prefix)) {
        return BusFailure::refused;
    }
    name.remove_prefix(prefix.size());
    const auto* const found = std::find_if(namedFailures.begin(), namedFailures.end(),
                                           [name](const NamedFailure& each) { return each.name == name; });
    return found == namedFailures.end() ? BusFailure::refused : found->failure;
}

AXError axErrorOf(BusFailure failure) {
    switch (failure) {
        case BusFailure::peerGone:
            return AXError::invalidUIElement;
        case BusFailure::unknownObject:
        case BusFailure::unsupported:
            return AXError::attributeUnsupported;
        case BusFailure::refused:
            break;
    }
    return AXError::failure;
}

}  // namespace lomaris
