#include "accessibility/model/json_fields.h"

#include "accessibility/model/json_integer.h"
#include "accessibility/model/json_string.h"

#include <algorithm>
#include <utility>

namespace lomaris {

namespace {

/// Keys of records are ASCII.
bool isKey(TextView text, std::string_view key) {
    return std::equal(text.begin(), text.end(), key.begin(), key.end(),
                      [](char16_t unit, char character) { return unit == static_cast<unsigned char>(character); });
}

}  // namespace

JsonFields::JsonFields(const JsonValue& value) {
    const auto members = membersOf(value);
    complete_ = members.has_value();
    if (!members) {
        return;
    }
    for (const JsonMember& member : *members) {
        auto key = decodeJsonString(member.key);
        if (!key) {
            complete_ = false;
            return;
        }
        members_.push_back({std::move(*key), member.value});
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
    const auto member =
        std::find_if(members_.begin(), members_.end(), [key](const Member& entry) { return isKey(entry.key, key); });
    if (member == members_.end() || member->value.kind == JsonKind::null) {
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
