#include "accessibility/model/json_fields.h"

#include <algorithm>
#include <variant>

namespace lomaris {

namespace {

/// Keys of records are ASCII.
bool isKey(TextView text, std::string_view key) {
    return std::equal(text.begin(), text.end(), key.begin(), key.end(),
                      [](char16_t unit, char character) { return unit == static_cast<unsigned char>(character); });
}

}  // namespace

JsonFields::JsonFields(const JsonValue& value)
    : object_(std::get_if<JsonObject>(&value.value)), complete_(object_ != nullptr) {}

const JsonValue* JsonFields::required(std::string_view key) {
    const JsonValue* const value = optional(key);
    if (value == nullptr) {
        complete_ = false;
    }
    return value;
}

const JsonValue* JsonFields::optional(std::string_view key) const {
    if (object_ == nullptr) {
        return nullptr;
    }
    const auto member =
        std::find_if(object_->begin(), object_->end(), [key](const auto& entry) { return isKey(entry.key, key); });
    if (member == object_->end() || std::holds_alternative<JsonNull>(member->value.value)) {
        return nullptr;
    }
    return &member->value;
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
    const auto* const text = std::get_if<Text>(&value->value);
    if (text == nullptr) {
        complete_ = false;
        return std::nullopt;
    }
    return *text;
}

bool JsonFields::boolean(std::string_view key) {
    const JsonValue* const value = required(key);
    const auto* const boolean = value == nullptr ? nullptr : std::get_if<bool>(&value->value);
    if (boolean == nullptr) {
        complete_ = false;
        return false;
    }
    return *boolean;
}

std::int64_t JsonFields::wideInteger(std::string_view key) {
    const JsonValue* const value = required(key);
    const auto* const number = value == nullptr ? nullptr : std::get_if<JsonNumber>(&value->value);
    const auto integer = number == nullptr ? std::nullopt : integerValue(*number);
    if (!integer) {
        complete_ = false;
        return 0;
    }
    return *integer;
}

}  // namespace lomaris
