#include "platform/linux/x11/window_identity.h"

#include "platform/linux/x11/x11_properties.h"

#include <unistd.h>

#include <array>
#include <limits>
#include <string_view>

namespace lomaris {

namespace {

struct IdentityRequests {
    PropertyRequest process;
    PropertyRequest machine;
    PropertyRequest applicationIdentifier;
    PropertyRequest windowClass;
};

std::string upToZeroByte(const std::string& bytes) { return bytes.substr(0, bytes.find('\0')); }

std::string nameOfThisMachine() {
    std::array<char, 256> name{};
    gethostname(name.data(), name.size() - 1);
    return name.data();
}

/// True if the names are equal, or if one is the other without its domain.
bool isSameMachine(std::string_view a, std::string_view b) {
    const std::string_view shorter = a.size() < b.size() ? a : b;
    const std::string_view longer = a.size() < b.size() ? b : a;
    return longer.starts_with(shorter) && (longer.size() == shorter.size() || longer[shorter.size()] == '.');
}

/// Returns the process identifier if it is valid and of this machine. A window without `WM_CLIENT_MACHINE` counts as
/// local.
std::optional<ProcessIdentifier> localProcess(std::optional<std::uint32_t> number, const std::string& machine) {
    constexpr auto largest = static_cast<std::uint32_t>(std::numeric_limits<ProcessIdentifier>::max());
    if (!number || *number == 0 || *number > largest) {
        return std::nullopt;
    }
    if (!machine.empty() && machine != "localhost" && !isSameMachine(machine, nameOfThisMachine())) {
        return std::nullopt;
    }
    return static_cast<ProcessIdentifier>(*number);
}

}  // namespace

std::vector<WindowIdentity> identifyWindows(X11Connection& connection, std::span<const xcb_window_t> windows) {
    std::vector<IdentityRequests> requests;
    requests.reserve(windows.size());
    for (const xcb_window_t window : windows) {
        requests.push_back({
            .process = requestProperty(connection, window, connection.atoms().windowProcess),
            .machine = requestProperty(connection, window, XCB_ATOM_WM_CLIENT_MACHINE),
            .applicationIdentifier = requestProperty(connection, window, connection.atoms().gtkApplicationId),
            .windowClass = requestProperty(connection, window, XCB_ATOM_WM_CLASS),
        });
    }
    std::vector<WindowIdentity> identities;
    identities.reserve(windows.size());
    for (const IdentityRequests& request : requests) {
        const auto process = receiveNumber(connection, request.process);
        const std::string machine = upToZeroByte(receiveBytes(connection, request.machine));
        identities.push_back({
            .processIdentifier = localProcess(process, machine),
            .applicationIdentifier = upToZeroByte(receiveBytes(connection, request.applicationIdentifier)),
            .windowClass = windowClassFromProperty(receiveBytes(connection, request.windowClass)),
        });
    }
    return identities;
}

}  // namespace lomaris
