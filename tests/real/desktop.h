#pragma once

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace lomaris::test {

// What a person sees and does on the private desktop in which these tests run, through other programs than the one
// under test.

/// The process whose window is in front.
[[nodiscard]] std::optional<pid_t> processInFront();

/// The title of the window in front; empty where there is none.
[[nodiscard]] std::string titleInFront();

/// Brings a window of a process to the front; returns once it is there, and throws where it never is.
void bringToFront(pid_t processIdentifier);

/// The same for the window whose title has these words in it.
void bringToFront(const std::string& title);

/// Presses and releases keys, one after the other ("ctrl+Home", "shift+Right").
void pressKeys(const std::vector<std::string>& keys);

/// Moves the pointer to where no window is, and presses its middle button there.
void movePointerAside();
void clickAside();

/// The text that was marked last, in whatever application, or nothing where none is.
[[nodiscard]] std::optional<std::string> markedText();

/// Whether the document in front comes to be this text. Marks all of it.
[[nodiscard]] bool documentBecomes(const std::string& text);

}  // namespace lomaris::test
