#pragma once

#include <string>
#include <string_view>

namespace lomaris {

/// The two names that a window carries for the resource database ("Navigator" and "firefox-esr"), empty where it has
/// none.
struct WindowClass {
    std::string instanceName;
    std::string className;

    friend bool operator==(const WindowClass&, const WindowClass&) = default;
};

/// Takes the bytes of the property apart: two names, each with a zero byte behind it. Missing ends are tolerated.
[[nodiscard]] WindowClass windowClassFromProperty(std::string_view bytes);

}  // namespace lomaris
