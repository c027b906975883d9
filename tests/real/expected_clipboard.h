#pragma once

#include "tests/x11/user_clipboard.h"

#include <string>

namespace lomaris::test {

/// The contents of the clipboard after the tool has pasted this text, which must be ASCII.
[[nodiscard]] ClipboardContents pastedContents(const std::string& text);

/// The targets with their types and bytes, long ones shortened, as one line of a message.
[[nodiscard]] std::string describe(const ClipboardContents& contents);

}  // namespace lomaris::test
