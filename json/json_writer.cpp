#include "json/json_writer.h"

#include "text/code_points.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <utility>

namespace lomaris {

namespace {

constexpr std::size_t spacesPerLevel = 2;

/// UTF-16 units converted at a time: few enough that their UTF-8 is still in the L1 cache when it is escaped.
constexpr std::size_t stretch = 1024;

/// Bytes escaped at a time, and the block that is copied unchanged if no byte of it needs escaping.
constexpr std::size_t pieceSize = 1024;
constexpr std::size_t blockSize = 16;
/// "\u001f"
constexpr std::size_t longestEscape = 6;

bool needsEscape(char byte, char slash) {
    return static_cast<unsigned char>(byte) < 0x20 || byte == '"' || byte == '\\' || byte == slash;
}

bool needsEscape(const char* block, char slash) {
    // A byte, so that the compiler vectorizes the loop.
    unsigned char found = 0;
    for (std::size_t offset = 0; offset < blockSize; ++offset) {
        found = static_cast<unsigned char>(found | static_cast<unsigned char>(needsEscape(block[offset], slash)));
    }
    return found != 0;
}

/// Writes a byte that must be escaped. Returns the end of the output.
char* writeEscape(char* output, char byte) {
    constexpr std::string_view digits = "0123456789abcdef";
    constexpr std::string_view shortened = "\b\f\n\r\t\"\\/";
    constexpr std::string_view letters = "bfnrt\"\\/";
    *output++ = '\\';
    if (const std::size_t index = shortened.find(byte); index != std::string_view::npos) {
        *output++ = letters[index];
        return output;
    }
    const auto value = static_cast<unsigned char>(byte);
    for (const char digit : {'u', '0', '0', digits[value >> 4U], digits[value & 0xFU]}) {
        *output++ = digit;
    }
    return output;
}

/// Writes a piece with the necessary escapes. Returns the end of the output.
char* escapePiece(std::string_view piece, char slash, char* output) {
    std::size_t position = 0;
    while (position < piece.size()) {
        const std::size_t length = std::min(blockSize, piece.size() - position);
        const char* const block = piece.data() + position;
        position += length;
        if (length == blockSize && !needsEscape(block, slash)) {
            output = std::copy_n(block, blockSize, output);
            continue;
        }
        for (std::size_t offset = 0; offset < length; ++offset) {
            if (needsEscape(block[offset], slash)) {
                output = writeEscape(output, block[offset]);
            } else {
                *output++ = block[offset];
            }
        }
    }
    return output;
}

void appendEscaped(std::string& output, std::string_view bytes, char slash) {
    std::array<char, pieceSize * longestEscape> escaped;  // NOLINT(cppcoreguidelines-pro-type-member-init)
    for (std::size_t position = 0; position < bytes.size(); position += pieceSize) {
        const char* const end = escapePiece(bytes.substr(position, pieceSize), slash, escaped.data());
        output.append(escaped.data(), static_cast<std::size_t>(end - escaped.data()));
    }
}

}  // namespace

void JsonWriter::beginObject() { open('{'); }

void JsonWriter::endObject() {
    --depth_;
    newLine();
    output_.push_back('}');
    firstInContainer_ = false;
}

void JsonWriter::beginArray() { open('['); }

void JsonWriter::endArray() {
    --depth_;
    if (firstInContainer_) {
        output_.push_back('\n');
    }
    newLine();
    output_.push_back(']');
    firstInContainer_ = false;
}

void JsonWriter::key(std::string_view name) {
    beginValue();
    output_.push_back('"');
    output_ += name;
    output_ += "\" : ";
    afterKey_ = true;
}

void JsonWriter::string(TextView text) {
    // If "/" is not escaped, a second quotation mark, which is always escaped, takes its place.
    const char slash = slashes_ == SlashEscaping::escaped ? '/' : '"';
    beginValue();
    output_.reserve(output_.size() + text.size() + text.size() / 8 + 2);
    output_.push_back('"');
    std::string bytes;
    for (std::size_t start = 0; start < text.size();) {
        std::size_t end = std::min(start + stretch, text.size());
        // Keeps a surrogate pair in one stretch.
        while (end < text.size() && isLowSurrogate(text[end])) {
            ++end;
        }
        bytes.clear();
        appendUtf8(bytes, text.substr(start, end - start));
        appendEscaped(output_, bytes, slash);
        start = end;
    }
    output_.push_back('"');
}

void JsonWriter::integer(std::int64_t number) {
    beginValue();
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
    output_.append(digits.begin(), end);
}

void JsonWriter::boolean(bool value) {
    beginValue();
    output_ += value ? "true" : "false";
}

std::string JsonWriter::take() {
    firstInContainer_ = true;
    return std::exchange(output_, std::string());
}

void JsonWriter::beginValue() {
    if (std::exchange(afterKey_, false)) {
        return;
    }
    if (!firstInContainer_) {
        output_.push_back(',');
    }
    firstInContainer_ = false;
    if (depth_ > 0) {
        newLine();
    }
}

void JsonWriter::open(char bracket) {
    beginValue();
    output_.push_back(bracket);
    ++depth_;
    firstInContainer_ = true;
}

void JsonWriter::newLine() {
    output_.push_back('\n');
    output_.append(depth_ * spacesPerLevel, ' ');
}

}  // namespace lomaris
