#pragma once

#include "platform/pasteboard.h"
#include "platform/scheduling.h"
#include "simulator/json_file.h"
#include "text/text.h"

#include <string>

/// What the simulator writes, in the forms in which a desktop file would say it.
namespace lomaris::simulator {

/// A string, or an array of UTF-16 units where half a surrogate pair stands in the text.
[[nodiscard]] Json jsonOf(TextView text);

/// {"text": ...}, or {"base64": ...} where the bytes are no UTF-8.
[[nodiscard]] Json jsonOfBytes(const Bytes& bytes);

/// Seconds.
[[nodiscard]] Json jsonOf(Duration duration);

/// The JSON as UTF-8 on one line; a string that is none has U+FFFD in the place of what is wrong.
[[nodiscard]] std::string written(const Json& json);

/// The same for people: indented, but what fits into a line of 120 columns stands on one. Ends with a line feed.
[[nodiscard]] std::string writtenForPeople(const Json& json);

}  // namespace lomaris::simulator
