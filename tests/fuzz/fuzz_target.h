#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

/// A fuzz target is one file that defines `tryInput`, which checks properties that must hold for any bytes. The same
/// file is built into two programs: one that searches for inputs that violate a property (`search_main.cpp`, with
/// clang's fuzzer), and one that replays the inputs of the corpus (`replay_main.cpp`, with any compiler).
namespace lomaris::test {

/// Returns if all properties hold. Throws `PropertyViolation` if one does not. Any other exception and any report of a
/// sanitizer is a defect too.
void tryInput(std::string_view bytes);

/// A property that must hold for every input does not hold for this one.
class PropertyViolation : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

inline void require(bool holds, const std::string& property) {
    if (!holds) {
        throw PropertyViolation(property);
    }
}

}  // namespace lomaris::test
