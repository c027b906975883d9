#pragma once

#include <cstdint>
#include <span>
#include <string_view>

/// Facts about single applications that cannot be read from their windows, with one row for each window class.
///
/// This folder is one table: the identifier and the editing keys of an application. `x11/` uses it for identifiers, and
/// `x11/keyboard/` for keys. It depends on no other folder and on no library.
///
/// Invariants: class names are unique and in lower case; the table in docs/linux.md lists the same classes.
namespace lomaris::applications {

/// How Copy, Paste and Delete are pressed in an application.
enum class EditingKeys : std::uint8_t {
    /// Control+C copies, Control+V pastes over the selection, BackSpace deletes it.
    control,
    /// Control+Shift+C copies. Paste and Delete have no keys, because in a terminal they do not change the selected
    /// text, and a pasted line break runs a command.
    controlShiftToCopy,
    /// None of the three has a key. Control+C interrupts a program or is an editing command.
    none,
};

/// One row of the table.
struct Application {
    /// The class name of `WM_CLASS` (ICCCM 4.1.2.5), in lower case.
    std::string_view className;
    /// The bundle identifier by which the portable code recognizes the application. Empty if it does not need to.
    std::string_view bundleIdentifier;
    EditingKeys keys = EditingKeys::control;
};

/// All rows, in no particular order.
[[nodiscard]] std::span<const Application> applicationTable();

/// The row for this class name, compared without regard to the case of ASCII letters. Null if the table has none.
/// Static storage.
[[nodiscard]] const Application* findApplication(std::string_view className);

}  // namespace lomaris::applications
