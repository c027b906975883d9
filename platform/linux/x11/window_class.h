#pragma once

#include <string>
#include <string_view>

namespace lomaris {

/// The property `WM_CLASS` of a window (ICCCM 4.1.2.5), such as "Navigator" and "firefox-esr". Empty names if it is not
/// set.
struct WindowClass {
    std::string instanceName;
    std::string className;

    friend bool operator==(const WindowClass&, const WindowClass&) = default;
};

/// Parses the bytes of the property: two names, each terminated by a zero byte. Accepts missing terminators.
[[nodiscard]] WindowClass windowClassFromProperty(std::string_view bytes);

}  // namespace lomaris
