#include "simulator/json_file.h"

#include "simulator/file_error.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace lomaris::simulator {
namespace {

/// Returns the place of the byte with this number as "line:column". All three count from 1, columns in characters.
std::string placeOf(std::string_view contents, std::size_t number) {
    const std::string_view before =
        contents.substr(0, std::min(number - std::min<std::size_t>(number, 1), contents.size()));
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const std::string_view column = before.substr(before.rfind('\n') + 1);
    const auto characters = std::count_if(
        column.begin(), column.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xc0U) != 0x80U; });
    return std::to_string(line) + ":" + std::to_string(characters + 1);
}

/// Returns the parser's message without its position.
std::string reasonOf(const std::string& message) {
    constexpr std::string_view marker = "syntax error ";
    const std::size_t found = message.find(marker);
    return "expected JSON: " + (found == std::string::npos ? message : message.substr(found));
}

/// Finds errors that the parsed value does not show or locate: repeated keys, numbers that are too large, and nesting
/// too deep for the recursive readers.
class Inspection final : public Json::json_sax_t {
public:
    explicit Inspection(std::string_view contents) : contents_(contents) {}

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
    bool parse_error(std::size_t position, const std::string& /*token*/,
                     const nlohmann::detail::exception& error) override {
        if (dynamic_cast<const Json::out_of_range*>(&error) != nullptr) {
            throw FileError(placeOfNext(), "expected a number from -1.79e308 to 1.79e308");
        }
        throw FileError(placeOf(contents_, position), reasonOf(error.what()));
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
        /// The path from the level to its current member.
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
        constexpr std::size_t most = 500;
        Level level;
        level.isArray = isArray;
        level.place = placeOfNext();
        if (levels_.size() == most) {
            throw FileError(level.place, "expected at most " + std::to_string(most) + " levels of arrays and objects");
        }
        levels_.push_back(level);
        return true;
    }

    /// Returns the path to the next value.
    [[nodiscard]] std::string placeOfNext() const {
        if (levels_.empty()) {
            return "";
        }
        const Level& outer = levels_.back();
        return outer.place + (outer.isArray ? "[" + std::to_string(outer.index) + "]" : outer.step);
    }

    bool close() {
        levels_.pop_back();
        return value();
    }

    std::string_view contents_;
    std::vector<Level> levels_;
};

}  // namespace

Json parseJson(std::string_view contents) {
    constexpr bool ignoresComments = true;
    Inspection inspection(contents);
    Json::sax_parse(contents, &inspection, Json::input_format_t::json, true, ignoresComments);
    return Json::parse(contents, nullptr, true, ignoresComments);
}

}  // namespace lomaris::simulator
