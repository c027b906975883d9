#pragma once

#include <optional>
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

/// The reverse-DNS identifier of a well-known application that does not tell its own, by the class of its windows
/// regardless of letter case: browsers, code editors and terminals, which the tool treats in ways of their own. Nothing
/// for any other class.
[[nodiscard]] std::optional<std::string_view> identifierOfWindowClass(std::string_view className);

}  // namespace lomaris
