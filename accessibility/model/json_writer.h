#pragma once

#include "text/text.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace lomaris {

/// Whether "/" is written as "\/" or as it is.
enum class SlashEscaping : std::uint8_t { escaped, unescaped };

/// Writes JSON in the pretty-printed form of the platform's own encoder, which callers rely on byte for byte: two
/// spaces an indent, a space on both sides of the colon, one member a line, an empty array as a bracket, an empty line
/// and a bracket, no line feed at the end.
///
/// The keys of an object must be written in ascending order of their bytes, which is the order that the platform's
/// encoder sorts them into; keys are ASCII and need no escaping. No record is an object without members, so there is no
/// form for one. Half a surrogate pair in a text becomes U+FFFD.
class JsonWriter {
public:
    explicit JsonWriter(SlashEscaping slashes) : slashes_(slashes) {}

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();

    /// The key of the member whose value comes next.
    void key(std::string_view name);

    void string(TextView text);
    void integer(std::int64_t number);
    void boolean(bool value);

    /// The bytes written so far, UTF-8. The writer is empty afterwards.
    [[nodiscard]] std::string take();

private:
    void beginValue();
    void open(char bracket);
    void newLine();

    std::string output_;
    std::size_t depth_ = 0;
    SlashEscaping slashes_;
    bool afterKey_ = false;
    bool firstInContainer_ = true;
};

}  // namespace lomaris
