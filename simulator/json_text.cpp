#include "simulator/json_text.h"

#include "simulator/base64.h"
#include "text/utf8.h"

#include <cstddef>
#include <cstdint>

namespace lomaris::simulator {
namespace {

constexpr std::size_t columns = 120;
constexpr std::size_t step = 2;

/// Appends a value. Its first line starts at column `used`; further lines are indented by `indentation`.
void append(std::string& output, const Json& json, std::size_t indentation, std::size_t used) {
    const std::string flat = written(json);
    constexpr std::size_t comma = 1;
    if (!json.is_structured() || json.empty() || used + flat.size() + comma <= columns) {
        output += flat;
        return;
    }
    const std::string inner(indentation + step, ' ');
    output += json.is_array() ? '[' : '{';
    const char* separator = "\n";
    for (const auto& member : json.items()) {
        const std::string key = json.is_array() ? "" : written(member.key()) + ": ";
        output += separator;
        output += inner;
        output += key;
        append(output, member.value(), indentation + step, inner.size() + key.size());
        separator = ",\n";
    }
    output += '\n';
    output.append(indentation, ' ');
    output += json.is_array() ? ']' : '}';
}

}  // namespace

Json jsonOf(TextView text) {
    const std::string utf8 = utf8FromText(text);
    if (textFromUtf8(utf8) == text) {
        return utf8;
    }
    Json units = Json::array();
    for (const char16_t unit : text) {
        units.push_back(static_cast<std::uint16_t>(unit));
    }
    return units;
}

Json jsonOfBytes(const Bytes& bytes) {
    return isValidUtf8(bytes) ? Json{{"text", bytes}} : Json{{"base64", base64Of(bytes)}};
}

Json jsonOf(Duration duration) { return static_cast<double>(duration.count()) / 1e9; }

std::string written(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

std::string writtenForPeople(const Json& json) {
    std::string output;
    append(output, json, 0, 0);
    output += '\n';
    return output;
}

}  // namespace lomaris::simulator
