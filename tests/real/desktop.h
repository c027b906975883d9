#pragma once

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace lomaris::test {

// What a user sees and does on the private desktop of these tests, through other programs than the one under test.

/// The process of the window in front. nullopt if there is none.
[[nodiscard]] std::optional<pid_t> processInFront();

/// The title of the window in front. Empty if there is none.
[[nodiscard]] std::string titleInFront();

/// Raises a window of a process; returns when it is in front. Throws after a timeout.
void bringToFront(pid_t processIdentifier);

/// The same for the window whose title contains these words.
void bringToFront(const std::string& title);

/// Presses and releases keys, one after the other ("ctrl+Home", "shift+Right").
void pressKeys(const std::vector<std::string>& keys);

/// Moves the pointer to a place without a window; presses the middle button there.
void movePointerAside();
void clickAside();

/// The text of the PRIMARY selection: the text selected last, in any application. nullopt if there is none.
[[nodiscard]] std::optional<std::string> markedText();

/// Waits until the document in front is this text. Returns false after a timeout. Selects the whole document.
[[nodiscard]] bool documentBecomes(const std::string& text);

}  // namespace lomaris::test
