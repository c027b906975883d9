#include "accessibility/model/json_writer.h"

#include "text/utf8.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <utility>

namespace lomaris {

namespace {

constexpr std::size_t spacesPerLevel = 2;

/// Units looked at together, so that the compiler can do it in one step.
constexpr std::size_t stride = 16;

bool needsEscape(char16_t unit, char16_t slash) {
    return unit < 0x20 || unit == u'"' || unit == u'\\' || unit == slash;
}

/// Index of the first unit at or after `start` that needs an escape, or the length of the text.
std::size_t findEscape(TextView text, std::size_t start, char16_t slash) {
    std::size_t index = start;
    while (index + stride <= text.size()) {
        unsigned found = 0;
        for (std::size_t offset = 0; offset < stride; ++offset) {
            found |= static_cast<unsigned>(needsEscape(text[index + offset], slash));
        }
        if (found != 0) {
            break;
        }
        index += stride;
    }
    while (index < text.size() && !needsEscape(text[index], slash)) {
        ++index;
    }
    return index;
}

void appendEscape(std::string& output, char16_t unit) {
    constexpr std::string_view digits = "0123456789abcdef";
    output.push_back('\\');
    switch (unit) {
        case u'\b':
            output.push_back('b');
            return;
        case u'\f':
            output.push_back('f');
            return;
        case u'\n':
            output.push_back('n');
            return;
        case u'\r':
            output.push_back('r');
            return;
        case u'\t':
            output.push_back('t');
            return;
        case u'"':
        case u'\\':
        case u'/':
            output.push_back(static_cast<char>(unit));
            return;
        default:
            output += "u00";
            output.push_back(digits[unit >> 4U]);
            output.push_back(digits[unit & 0xFU]);
            return;
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
    // Where "/" stays as it is, the quotation mark, which is escaped anyway, stands in for it.
    const char16_t slash = slashes_ == SlashEscaping::escaped ? u'/' : u'"';
    beginValue();
    output_.reserve(output_.size() + text.size() + 2);
    output_.push_back('"');
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t escape = findEscape(text, start, slash);
        appendUtf8(output_, text.substr(start, escape - start));
        if (escape < text.size()) {
            appendEscape(output_, text[escape]);
        }
        start = escape + 1;
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
