#pragma once

#include "tests/x11/user_clipboard.h"

#include <string>

namespace lomaris::test {

/// What the tool leaves on the clipboard after it has pasted this text, which must be ASCII.
[[nodiscard]] ClipboardContents pastedContents(const std::string& text);

/// The targets with their types and bytes, long ones shortened, as one line for people.
[[nodiscard]] std::string describe(const ClipboardContents& contents);

}  // namespace lomaris::test
