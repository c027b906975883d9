#include "simulator/json_node.h"

#include "simulator/file_error.h"
#include "text/utf8.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace lomaris::simulator {

std::string listOf(std::span<const std::string_view> names) {
    std::string list;
    for (const std::string_view name : names) {
        list += list.empty() ? "" : ", ";
        list += name;
    }
    return list;
}

void JsonNode::refuse(std::string_view expected) const { throw FileError(place_, "expected " + std::string(expected)); }

void JsonNode::allowKeys(std::initializer_list<std::string_view> keys) const {
    allowKeys(std::span(keys.begin(), keys.size()));
}

void JsonNode::allowKeys(std::span<const std::string_view> keys) const {
    for (const auto& [key, node] : entries()) {
        if (std::find(keys.begin(), keys.end(), key) == keys.end()) {
            throw FileError(node.place(), "unknown key; expected one of: " + listOf(keys));
        }
    }
}

std::string_view JsonNode::onlyKey(std::span<const std::string_view> keys, std::string_view otherForms) const {
    const bool isObject = value_->is_object();
    if (isObject) {
        allowKeys(keys);
    }
    if (!isObject || value_->size() != 1) {
        refuse(std::string(otherForms) + "an object with exactly one of the keys " + listOf(keys));
    }
    return *std::find(keys.begin(), keys.end(), value_->begin().key());
}

std::optional<JsonNode> JsonNode::find(std::string_view key) const {
    if (!value_->is_object()) {
        refuse("an object");
    }
    return value_->contains(key) ? std::optional(member(key)) : std::nullopt;
}

JsonNode JsonNode::get(std::string_view key) const {
    const std::optional<JsonNode> found = find(key);
    if (!found) {
        refuse("an object with the key \"" + std::string(key) + "\"");
    }
    return *found;
}

std::vector<std::pair<std::string, JsonNode>> JsonNode::entries() const {
    if (!value_->is_object()) {
        refuse("an object");
    }
    std::vector<std::pair<std::string, JsonNode>> entries;
    for (const auto& item : value_->items()) {
        entries.emplace_back(item.key(), member(item.key()));
    }
    return entries;
}

std::vector<JsonNode> JsonNode::members() const {
    if (!value_->is_array()) {
        refuse("an array");
    }
    std::vector<JsonNode> members;
    for (std::size_t index = 0; index < value_->size(); ++index) {
        members.emplace_back((*value_)[index], place_ + "[" + std::to_string(index) + "]");
    }
    return members;
}

bool JsonNode::boolean() const {
    if (!value_->is_boolean()) {
        refuse("true or false");
    }
    return value_->get<bool>();
}

std::int64_t JsonNode::integer(std::int64_t lowest, std::int64_t highest) const {
    const bool isSmall = value_->is_number_integer() &&
                         (!value_->is_number_unsigned() || value_->get<std::uint64_t>() <= std::uint64_t{INT64_MAX});
    const std::int64_t number = isSmall ? value_->get<std::int64_t>() : 0;
    if (!isSmall || number < lowest || number > highest) {
        refuse("an integer from " + std::to_string(lowest) + " to " + std::to_string(highest));
    }
    return number;
}

std::string JsonNode::string() const {
    if (!value_->is_string()) {
        refuse("a string");
    }
    return value_->get<std::string>();
}

std::string JsonNode::choice(std::initializer_list<std::string_view> strings) const {
    for (const std::string_view each : strings) {
        if (value_->is_string() && value_->get<std::string>() == each) {
            return std::string(each);
        }
    }
    std::string names;
    for (const auto* each = strings.begin(); each != strings.end(); ++each) {
        if (!names.empty()) {
            names += each + 1 == strings.end() ? " or " : ", ";
        }
        names += '"' + std::string(*each) + '"';
    }
    refuse(names);
}

Duration JsonNode::seconds() const {
    constexpr double most = 1e6;
    const double number = value_->is_number() ? value_->get<double>() : -1;
    if (!(number >= 0 && number <= most)) {
        refuse("a number of seconds from 0 to 1000000");
    }
    return Duration(std::llround(number * 1e9));
}

Text JsonNode::text() const {
    if (value_->is_string()) {
        return textFromUtf8(value_->get<std::string>());
    }
    if (!value_->is_array()) {
        refuse("a string or an array of UTF-16 units");
    }
    Text text;
    for (const JsonNode& unit : members()) {
        text.push_back(static_cast<char16_t>(unit.integer(0, 0xffff)));
    }
    return text;
}

std::optional<Text> JsonNode::textOrNull() const {
    if (isNull()) {
        return std::nullopt;
    }
    if (!value_->is_string() && !value_->is_array()) {
        refuse("a string, an array of UTF-16 units or null");
    }
    return text();
}

JsonNode JsonNode::member(std::string_view key) const {
    return JsonNode(value_->at(std::string(key)), place_ + (place_.empty() ? "" : ".") + std::string(key));
}

}  // namespace lomaris::simulator
