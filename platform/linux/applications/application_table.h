#pragma once

#include <cstdint>
#include <span>
#include <string_view>

/// The applications of which more is known than their windows report. One table, so that an application has one row.
namespace lomaris::applications {

/// How Copy, Paste and Delete are pressed in an application.
enum class EditingKeys : std::uint8_t {
    /// Control+C copies, Control+V pastes over the selection, BackSpace deletes it.
    control,
    /// Control+Shift+C copies. Paste and Delete have no keys: in a terminal they do not change the selected text, and a
    /// pasted line break runs a command.
    controlShiftToCopy,
    /// None of the three has a key. Control+C interrupts a program or is an editing command.
    none,
};

struct Application {
    /// The class name of `WM_CLASS`, in lower case.
    std::string_view className;
    /// The reverse-DNS identifier by which the tool recognizes the application on every platform. Empty if it does not
    /// need to.
    std::string_view bundleIdentifier;
    EditingKeys keys = EditingKeys::control;
};

/// All rows, in no particular order. Class names are unique.
[[nodiscard]] std::span<const Application> applicationTable();

/// The row for this class name, compared without regard to the case of ASCII letters. Null if the table has none.
/// Static storage.
[[nodiscard]] const Application* findApplication(std::string_view className);

}  // namespace lomaris::applications
