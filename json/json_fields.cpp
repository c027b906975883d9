#include "json/json_fields.h"

#include "json/json_integer.h"
#include "json/json_string.h"

#include <algorithm>
#include <utility>

namespace lomaris {

namespace {

/// Compares a decoded key with a record's key, which is ASCII.
bool isKey(TextView text, std::string_view key) {
    return std::equal(text.begin(), text.end(), key.begin(), key.end(),
                      [](char16_t unit, char character) { return unit == static_cast<unsigned char>(character); });
}

}  // namespace

JsonFields::JsonFields(const JsonValue& value, std::initializer_list<std::string_view> keys) : complete_(true) {
    fields_.reserve(keys.size());
    for (const std::string_view key : keys) {
        fields_.push_back({key, std::nullopt});
    }
    if (!visitMembers(value, [this](const JsonMember& member) { take(member); })) {
        complete_ = false;
    }
}

void JsonFields::take(const JsonMember& member) {
    const auto key = decodeJsonString(member.key);
    if (!key) {
        complete_ = false;
        return;
    }
    const auto field = std::find_if(fields_.begin(), fields_.end(),
                                    [&key](const Field& candidate) { return isKey(*key, candidate.key); });
    if (field != fields_.end() && !field->value) {
        field->value = member.value;
    }
}

const JsonValue* JsonFields::required(std::string_view key) {
    const JsonValue* const value = optional(key);
    if (value == nullptr) {
        complete_ = false;
    }
    return value;
}

const JsonValue* JsonFields::optional(std::string_view key) const {
    const auto field =
        std::find_if(fields_.begin(), fields_.end(), [key](const Field& candidate) { return candidate.key == key; });
    if (field == fields_.end() || !field->value || field->value->kind == JsonKind::null) {
        return nullptr;
    }
    return &*field->value;
}

Text JsonFields::text(std::string_view key) {
    auto text = optionalText(key);
    if (!text) {
        complete_ = false;
        return {};
    }
    return std::move(*text);
}

std::optional<Text> JsonFields::optionalText(std::string_view key) {
    const JsonValue* const value = optional(key);
    if (value == nullptr) {
        return std::nullopt;
    }
    auto text = value->kind == JsonKind::string ? decodeJsonString(value->written) : std::nullopt;
    if (!text) {
        complete_ = false;
    }
    return text;
}

bool JsonFields::boolean(std::string_view key) {
    const JsonValue* const value = required(key);
    if (value == nullptr || value->kind != JsonKind::boolean) {
        complete_ = false;
        return false;
    }
    return value->written == "true";
}

std::int64_t JsonFields::wideInteger(std::string_view key) {
    const JsonValue* const value = required(key);
    const bool isNumber = value != nullptr && value->kind == JsonKind::number;
    const auto integer = isNumber ? decodeJsonInteger(value->written) : std::nullopt;
    if (!integer) {
        complete_ = false;
        return 0;
    }
    return *integer;
}

}  // namespace lomaris
