#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace lomaris::simulator {

/// A file that does not say what it may: where it is wrong and what was expected there. The place is "line:column" for
/// a file that is no JSON, else the way to a value, `applications[0].elements[3].name`, and empty for the whole file.
class FileError : public std::runtime_error {
public:
    FileError(std::string place, std::string_view expectation)
        : std::runtime_error((place.empty() ? "" : place + ": ") + std::string(expectation)),
          place_(std::move(place)) {}

    [[nodiscard]] const std::string& place() const { return place_; }

private:
    std::string place_;
};

}  // namespace lomaris::simulator
