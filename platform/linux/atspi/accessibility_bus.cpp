#include "platform/linux/atspi/accessibility_bus.h"

#include <cctype>
#include <cstdlib>
#include <string_view>

namespace lomaris {

namespace {

const ObjectReference& launcher() {
    static const ObjectReference object{"org.a11y.Bus", "/org/a11y/bus"};
    return object;
}

constexpr const char* statusInterface = "org.a11y.Status";
constexpr const char* isEnabled = "IsEnabled";

std::string environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

/// Returns `path` with every byte that a D-Bus address must escape as `%` and two hexadecimal digits.
std::string escaped(std::string_view path) {
    constexpr std::string_view plain = "-_/.\\*";
    constexpr std::string_view digits = "0123456789abcdef";
    std::string result;
    for (const char byte : path) {
        const auto value = static_cast<unsigned char>(byte);
        if (std::isalnum(value) != 0 || plain.find(byte) != std::string_view::npos) {
            result.push_back(byte);
        } else {
            result.push_back('%');
            result.push_back(digits[value / digits.size()]);
            result.push_back(digits[value % digits.size()]);
        }
    }
    return result;
}

}  // namespace

std::string sessionBusAddresses() {
    std::string addresses = environment("DBUS_SESSION_BUS_ADDRESS");
    if (!addresses.empty()) {
        return addresses;
    }
    const std::string directory = environment("XDG_RUNTIME_DIR");
    return directory.empty() ? std::string() : "unix:path=" + escaped(directory) + "/bus";
}

BusConnection* AccessibilityBus::session() {
    if (!session_) {
        session_ = BusConnection::open(sessionBusAddresses());
    }
    return session_->get();
}

BusConnection* AccessibilityBus::connection() {
    if (!accessibility_) {
        std::string address;
        if (BusConnection* const bus = session()) {
            bus->call(launcher(), "org.a11y.Bus", "GetAddress", {},
                      [&address](const BusReply& reply) { address = reply.readString().value_or(std::string()); });
            bus->finish();
        }
        accessibility_ = BusConnection::open(address);
    }
    return accessibility_->get();
}

AccessibilityStatus AccessibilityBus::status() {
    // Without an X server there is no front application.
    if (environment("DISPLAY").empty() || connection() == nullptr) {
        return AccessibilityStatus::unavailable;
    }
    std::optional<bool> enabled;
    session()->getProperty(launcher(), statusInterface, isEnabled,
                           [&enabled](const BusReply& reply) { enabled = reply.readBooleanProperty(); });
    session()->finish();
    if (!enabled) {
        return AccessibilityStatus::unavailable;
    }
    return *enabled ? AccessibilityStatus::enabled : AccessibilityStatus::disabled;
}

void AccessibilityBus::enable() {
    BusConnection* const bus = session();
    if (bus == nullptr) {
        return;
    }
    bus->call(launcher(), "org.freedesktop.DBus.Properties", "Set", {statusInterface, isEnabled, BooleanVariant{true}},
              [](const BusReply&) {});
    bus->finish();
}

}  // namespace lomaris
