#pragma once

#include "json/json_fields.h"
#include "json/json_value.h"
#include "json/json_writer.h"
#include "text/text.h"

#include <concepts>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

/// Writes and reads a struct as a JSON object by one list of its fields, so that both use the same keys.
namespace lomaris {

/// One field of a record: its key, which must be a string literal, and its member. The type of the member is that of
/// the JSON value: Text, bool, an integer, another record, an optional of these, or a vector of records.
template <typename Record, typename Value>
struct JsonField {
    constexpr JsonField(std::string_view fieldKey, Value Record::*fieldMember) : key(fieldKey), member(fieldMember) {}

    std::string_view key;
    Value Record::*member;
};

/// The fields of a record, a tuple of `JsonField` sorted by key. Specialized for each record.
template <typename Record>
inline constexpr std::tuple<> jsonFieldsOf{};

namespace json_record {

template <typename Value>
inline constexpr bool isOptional = false;
template <typename Value>
inline constexpr bool isOptional<std::optional<Value>> = true;

template <typename Value>
inline constexpr bool isVector = false;
template <typename Value>
inline constexpr bool isVector<std::vector<Value>> = true;

template <typename Value>
void write(JsonWriter& writer, const Value& value);

template <typename Value>
void writeMember(JsonWriter& writer, std::string_view key, const Value& value) {
    if constexpr (isOptional<Value>) {
        if (value) {
            writeMember(writer, key, *value);
        }
    } else {
        writer.key(key);
        write(writer, value);
    }
}

template <typename Value>
void write(JsonWriter& writer, const Value& value) {
    if constexpr (std::same_as<Value, Text>) {
        writer.string(value);
    } else if constexpr (std::same_as<Value, bool>) {
        writer.boolean(value);
    } else if constexpr (std::integral<Value>) {
        writer.integer(value);
    } else if constexpr (isVector<Value>) {
        writer.beginArray();
        for (const auto& element : value) {
            write(writer, element);
        }
        writer.endArray();
    } else {
        writer.beginObject();
        std::apply([&](const auto&... field) { (writeMember(writer, field.key, value.*field.member), ...); },
                   jsonFieldsOf<Value>);
        writer.endObject();
    }
}

template <typename Record>
[[nodiscard]] std::optional<Record> decode(const JsonValue& value);

template <typename Record>
[[nodiscard]] std::optional<std::vector<Record>> decodeArray(const JsonValue& value) {
    const auto elements = elementsOf(value);
    if (!elements) {
        return std::nullopt;
    }
    std::vector<Record> records;
    records.reserve(elements->size());
    for (const JsonValue& element : *elements) {
        auto record = decode<Record>(element);
        if (!record) {
            return std::nullopt;
        }
        records.push_back(std::move(*record));
    }
    return records;
}

/// Stores a decoded record or array, or marks the record around it as incomplete.
template <typename Value, typename Decoded>
void store(JsonFields& fields, Value& member, std::optional<Decoded> decoded) {
    if (decoded) {
        member = std::move(*decoded);
    } else {
        fields.fail();
    }
}

template <typename Value>
void read(JsonFields& fields, std::string_view key, Value& member) {
    if constexpr (std::same_as<Value, Text>) {
        member = fields.text(key);
    } else if constexpr (std::same_as<Value, std::optional<Text>>) {
        member = fields.optionalText(key);
    } else if constexpr (std::same_as<Value, bool>) {
        member = fields.boolean(key);
    } else if constexpr (std::integral<Value>) {
        member = fields.integer<Value>(key);
    } else if constexpr (isOptional<Value>) {
        if (fields.optional(key) != nullptr) {
            read(fields, key, member.emplace());
        }
    } else if (const JsonValue* const value = fields.required(key)) {
        if constexpr (isVector<Value>) {
            store(fields, member, decodeArray<typename Value::value_type>(*value));
        } else {
            store(fields, member, decode<Value>(*value));
        }
    }
}

template <typename Record>
std::optional<Record> decode(const JsonValue& value) {
    return std::apply(
        [&value](const auto&... field) -> std::optional<Record> {
            JsonFields fields(value, {field.key...});
            Record record;
            (read(fields, field.key, record.*field.member), ...);
            return fields.isComplete() ? std::optional(std::move(record)) : std::nullopt;
        },
        jsonFieldsOf<Record>);
}

}  // namespace json_record

/// Encodes a record in UTF-8, without a final line feed. Keys are sorted; absent fields are omitted.
template <typename Record>
[[nodiscard]] std::string encodeJsonRecord(const Record& record, SlashEscaping slashes) {
    JsonWriter writer(slashes);
    json_record::write(writer, record);
    return writer.take();
}

/// Decodes a record. An optional field may be missing or null; unknown keys are ignored. Returns nullopt if a required
/// key is missing, or if a value has the wrong type or is out of range.
template <typename Record>
[[nodiscard]] std::optional<Record> decodeJsonRecord(std::string_view bytes) {
    const auto document = parseJson(bytes);
    return document ? json_record::decode<Record>(document->root()) : std::nullopt;
}

}  // namespace lomaris
