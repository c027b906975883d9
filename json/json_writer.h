#pragma once

#include "text/text.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace lomaris {

/// Selects whether "/" is written as "\/" or unchanged.
enum class SlashEscaping : std::uint8_t { escaped, unescaped };

/// Writes JSON in exactly the pretty-printed form of the platform's own encoder, because callers depend on every byte:
/// indentation by two spaces, a space on both sides of the colon, one member per line, no final line feed. An empty
/// array is a bracket, an empty line and a bracket. There is no form for an empty object, because no record is empty.
///
/// The caller must write the keys of an object in ascending byte order, which is the order of the platform's encoder.
/// Keys are ASCII and need no escaping. Half a surrogate pair in a text becomes U+FFFD.
class JsonWriter {
public:
    explicit JsonWriter(SlashEscaping slashes) : slashes_(slashes) {}

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();

    /// Writes the key of a member. The next call must write its value.
    void key(std::string_view name);

    void string(TextView text);
    void integer(std::int64_t number);
    void boolean(bool value);

    /// Returns the UTF-8 bytes written so far and clears the writer.
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
