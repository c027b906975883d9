#include "accessibility/model/json_writer.h"

#include "accessibility/model/block_search.h"
#include "text/utf8.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <utility>

namespace lomaris {

namespace {

constexpr std::size_t spacesPerLevel = 2;

/// Units that are converted to UTF-8 together: enough for the conversion to get going, few enough for the cache.
constexpr std::size_t batchSize = 4096;

bool needsEscape(char16_t unit, char16_t slash) {
    return unit < 0x20 || unit == u'"' || unit == u'\\' || unit == slash;
}

void appendEscape(Text& output, char16_t unit) {
    constexpr TextView digits = u"0123456789abcdef";
    output.push_back(u'\\');
    switch (unit) {
        case u'\b':
            output.push_back(u'b');
            return;
        case u'\f':
            output.push_back(u'f');
            return;
        case u'\n':
            output.push_back(u'n');
            return;
        case u'\r':
            output.push_back(u'r');
            return;
        case u'\t':
            output.push_back(u't');
            return;
        case u'"':
        case u'\\':
        case u'/':
            output.push_back(unit);
            return;
        default:
            output += u"u00";
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
    const auto isEscaped = [slash](char16_t unit) { return needsEscape(unit, slash); };
    beginValue();
    output_.reserve(output_.size() + text.size() + text.size() / 8 + 2);
    output_.push_back('"');
    Text batch;
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t escape = findFirst(text, start, isEscaped);
        // Only escapes end a batch: no surrogate pair is torn.
        if (escape - start < batchSize) {
            batch.append(text, start, escape - start);
        } else {
            appendUtf8(output_, std::exchange(batch, Text()));
            appendUtf8(output_, text.substr(start, escape - start));
        }
        if (escape < text.size()) {
            appendEscape(batch, text[escape]);
        }
        if (batch.size() >= batchSize) {
            appendUtf8(output_, batch);
            batch.clear();
        }
        start = escape + 1;
    }
    appendUtf8(output_, batch);
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
