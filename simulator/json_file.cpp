#include "simulator/json_file.h"

#include "simulator/file_error.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace lomaris::simulator {
namespace {

/// "line:column" of the byte with this number, all from 1; a character of several bytes is one column.
std::string placeOf(std::string_view contents, std::size_t number) {
    const std::string_view before =
        contents.substr(0, std::min(number - std::min<std::size_t>(number, 1), contents.size()));
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const std::string_view column = before.substr(before.rfind('\n') + 1);
    const auto characters = std::count_if(
        column.begin(), column.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xc0U) != 0x80U; });
    return std::to_string(line) + ":" + std::to_string(characters + 1);
}

/// What the parser's own sentence says after its place.
std::string reasonOf(const std::string& message) {
    constexpr std::string_view marker = "syntax error ";
    const std::size_t found = message.find(marker);
    return "expected JSON: " + (found == std::string::npos ? message : message.substr(found));
}

/// Follows the parser to find keys that stand twice, which the parsed value no longer shows.
class DuplicateKeys final : public Json::json_sax_t {
public:
    bool null() override { return value(); }
    bool boolean(bool /*held*/) override { return value(); }
    bool number_integer(number_integer_t /*held*/) override { return value(); }
    bool number_unsigned(number_unsigned_t /*held*/) override { return value(); }
    bool number_float(number_float_t /*held*/, const string_t& /*spelling*/) override { return value(); }
    bool string(string_t& /*held*/) override { return value(); }
    bool binary(binary_t& /*held*/) override { return value(); }
    bool start_object(std::size_t /*count*/) override { return open(false); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t /*count*/) override { return open(true); }
    bool end_array() override { return close(); }
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const nlohmann::detail::exception& /*error*/) override {
        return false;
    }

    bool key(string_t& name) override {
        Level& level = levels_.back();
        const bool isNew = level.keys.insert(name).second;
        level.step = (level.place.empty() ? "" : ".") + name;
        if (!isNew) {
            throw FileError(level.place + level.step, "expected each key once");
        }
        return true;
    }

private:
    struct Level {
        bool isArray = false;
        std::string place;
        /// From the place of the level to that of its current member.
        std::string step;
        std::size_t index = 0;
        std::set<std::string> keys;
    };

    bool value() {
        if (!levels_.empty() && levels_.back().isArray) {
            ++levels_.back().index;
        }
        return true;
    }

    bool open(bool isArray) {
        Level level;
        level.isArray = isArray;
        if (!levels_.empty()) {
            const Level& outer = levels_.back();
            level.place = outer.place + (outer.isArray ? "[" + std::to_string(outer.index) + "]" : outer.step);
        }
        levels_.push_back(level);
        return true;
    }

    bool close() {
        levels_.pop_back();
        return value();
    }

    std::vector<Level> levels_;
};

}  // namespace

Json parseJson(std::string_view contents) {
    constexpr bool ignoresComments = true;
    try {
        Json parsed = Json::parse(contents, nullptr, true, ignoresComments);
        DuplicateKeys duplicates;
        Json::sax_parse(contents, &duplicates, Json::input_format_t::json, true, ignoresComments);
        return parsed;
    } catch (const Json::parse_error& error) {
        throw FileError(placeOf(contents, error.byte), reasonOf(error.what()));
    } catch (const Json::exception& error) {
        throw FileError("", reasonOf(error.what()));
    }
}

}  // namespace lomaris::simulator
