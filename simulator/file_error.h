#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace lomaris::simulator {

/// An invalid file: the place of the error and what was expected there. The place is "line:column" if the file is not
/// JSON, otherwise the path to a value, `applications[0].elements[3].name`. It is empty for the whole file.
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
