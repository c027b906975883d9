#include "accessibility/model/json_value.h"

#include "text/utf8.h"

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <cmath>
#include <cstddef>
#include <utility>

namespace lomaris {

namespace {

constexpr std::size_t maximumDepth = 512;

/// Builds the tree from the parser's events. Answering false ends the parse.
class TreeBuilder {
public:
    bool Null() { return add(JsonValue{JsonNull{}}); }
    bool Bool(bool value) { return add(JsonValue{value}); }
    bool RawNumber(const char* digits, rapidjson::SizeType length, bool /*copy*/) {
        return add(JsonValue{JsonNumber{std::string(digits, length)}});
    }
    bool String(const char* bytes, rapidjson::SizeType length, bool /*copy*/) {
        // The parser lets a lone low surrogate escape through, as bytes that are no UTF-8.
        auto text = textFromValidUtf8({bytes, length});
        return text && add(JsonValue{std::move(*text)});
    }
    bool Key(const char* bytes, rapidjson::SizeType length, bool /*copy*/) {
        auto text = textFromValidUtf8({bytes, length});
        if (!text) {
            return false;
        }
        std::get<JsonObject>(open_.back().value).push_back({std::move(*text), JsonValue{}});
        return true;
    }
    bool StartObject() { return open(JsonValue{JsonObject{}}); }
    bool StartArray() { return open(JsonValue{JsonArray{}}); }
    bool EndObject(rapidjson::SizeType /*count*/) { return close(); }
    bool EndArray(rapidjson::SizeType /*count*/) { return close(); }

    // Numbers come as they are written; the parser wants these to exist all the same.
    static bool Int(int /*value*/) { return false; }
    static bool Uint(unsigned /*value*/) { return false; }
    static bool Int64(std::int64_t /*value*/) { return false; }
    static bool Uint64(std::uint64_t /*value*/) { return false; }
    static bool Double(double /*value*/) { return false; }

    std::optional<JsonValue> takeRoot() { return std::move(root_); }

private:
    bool open(JsonValue container) {
        if (open_.size() == maximumDepth) {
            return false;
        }
        open_.push_back(std::move(container));
        return true;
    }

    bool close() {
        JsonValue container = std::move(open_.back());
        open_.pop_back();
        return add(std::move(container));
    }

    bool add(JsonValue value) {
        if (open_.empty()) {
            root_ = std::move(value);
        } else if (auto* object = std::get_if<JsonObject>(&open_.back().value)) {
            object->back().value = std::move(value);
        } else {
            std::get<JsonArray>(open_.back().value).push_back(std::move(value));
        }
        return true;
    }

    /// Containers that are not closed yet, outermost first.
    std::vector<JsonValue> open_;
    std::optional<JsonValue> root_;
};

/// Takes the value of one number from the parser, which knows no locale.
class IntegerReader {
public:
    bool Null() { return false; }
    bool Bool(bool /*value*/) { return false; }
    bool RawNumber(const char* /*digits*/, rapidjson::SizeType /*length*/, bool /*copy*/) { return false; }
    bool String(const char* /*bytes*/, rapidjson::SizeType /*length*/, bool /*copy*/) { return false; }
    bool Key(const char* /*bytes*/, rapidjson::SizeType /*length*/, bool /*copy*/) { return false; }
    bool StartObject() { return false; }
    bool StartArray() { return false; }
    bool EndObject(rapidjson::SizeType /*count*/) { return false; }
    bool EndArray(rapidjson::SizeType /*count*/) { return false; }

    bool Int(int value) { return take(value); }
    bool Uint(unsigned value) { return take(value); }
    bool Int64(std::int64_t value) { return take(value); }
    bool Uint64(std::uint64_t value) {
        return std::in_range<std::int64_t>(value) && take(static_cast<std::int64_t>(value));
    }
    bool Double(double value) {
        constexpr double limit = 9223372036854775808.0;  // 2^63, the first double above the range
        return std::trunc(value) == value && value >= -limit && value < limit && take(static_cast<std::int64_t>(value));
    }

    std::optional<std::int64_t> value() const { return value_; }

private:
    bool take(std::int64_t value) {
        value_ = value;
        return true;
    }

    std::optional<std::int64_t> value_;
};

}  // namespace

std::optional<JsonValue> parseJson(std::string_view bytes) {
    if (!isValidUtf8(bytes)) {
        return std::nullopt;
    }
    rapidjson::MemoryStream stream(bytes.data(), bytes.size());
    rapidjson::Reader reader;
    TreeBuilder builder;
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
    const auto result = reader.Parse<flags>(stream, builder);
    // The parser takes a NUL byte for the end of the document.
    if (result.IsError() || stream.Tell() != bytes.size()) {
        return std::nullopt;
    }
    return builder.takeRoot();
}

std::optional<std::int64_t> integerValue(const JsonNumber& number) {
    rapidjson::MemoryStream stream(number.digits.data(), number.digits.size());
    rapidjson::Reader reader;
    IntegerReader integer;
    constexpr unsigned flags = rapidjson::kParseFullPrecisionFlag;
    return reader.Parse<flags>(stream, integer).IsError() ? std::nullopt : integer.value();
}

}  // namespace lomaris
