#pragma once

#include "platform/element.h"
#include "text/text.h"

#include <cstdint>
#include <limits>
#include <variant>
#include <vector>

namespace lomaris {

/// A range of a text, as the target application reports it: location and length in UTF-16 units. Not validated: either
/// number may be negative, and the range may exceed the text.
struct TextRange {
    std::int64_t location = 0;
    std::int64_t length = 0;

    friend bool operator==(const TextRange&, const TextRange&) = default;
};

/// The platform's not-found marker: a `location` that denotes no position.
inline constexpr std::int64_t notFoundLocation = std::numeric_limits<std::int64_t>::max();

/// No value. Possible even if the copy succeeded.
struct NullValue {
    friend bool operator==(const NullValue&, const NullValue&) = default;
};

/// A number that is not a 64-bit integer.
struct OtherNumber {
    double value = 0;

    friend bool operator==(const OtherNumber&, const OtherNumber&) = default;
};

/// An array with at least one member that is not an element.
struct MixedArray {
    friend bool operator==(const MixedArray&, const MixedArray&) = default;
};

/// A boxed value that is not a text range (a point, a size, ...), or a range that could not be unboxed.
struct OtherBoxedValue {
    friend bool operator==(const OtherBoxedValue&, const OtherBoxedValue&) = default;
};

/// A value of a kind that this project does not use.
struct OtherValue {
    friend bool operator==(const OtherValue&, const OtherValue&) = default;
};

/// The value of an attribute. The set of kinds is closed, so that callers see a null value with a success code and a
/// value of the wrong kind for what they are. An empty array is an array of elements.
using AttributeValue = std::variant<NullValue, Text, bool, std::int64_t, OtherNumber, Element, std::vector<Element>,
                                    MixedArray, TextRange, OtherBoxedValue, OtherValue>;

}  // namespace lomaris
