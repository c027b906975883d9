#pragma once

#include "platform/pasteboard.h"
#include "platform/scheduling.h"
#include "simulator/json_file.h"
#include "text/text.h"

#include <string>

/// Converts values to the JSON in which a desktop file would contain them.
namespace lomaris::simulator {

/// A string, or an array of UTF-16 units if the text contains half a surrogate pair.
[[nodiscard]] Json jsonOf(TextView text);

/// {"text": ...}, or {"base64": ...} if the bytes are not UTF-8.
[[nodiscard]] Json jsonOfBytes(const Bytes& bytes);

/// In seconds.
[[nodiscard]] Json jsonOf(Duration duration);

/// Returns the JSON as UTF-8 on one line. Invalid UTF-8 in strings becomes U+FFFD.
[[nodiscard]] std::string written(const Json& json);

/// As `written`, but indented; a value that fits into 120 columns is on one line. Ends with a line feed.
[[nodiscard]] std::string writtenForPeople(const Json& json);

}  // namespace lomaris::simulator
