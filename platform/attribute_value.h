#pragma once

#include "platform/element.h"
#include "text/text.h"

#include <cstdint>
#include <limits>
#include <variant>
#include <vector>

namespace lomaris {

/// A range of a text: position and length in UTF-16 units, as the target application reports them. Nothing is promised:
/// either number may be negative, and the range may lie outside of the text.
struct TextRange {
    std::int64_t location = 0;
    std::int64_t length = 0;

    friend bool operator==(const TextRange&, const TextRange&) = default;
};

/// The platform's not-found marker: a `location` that stands for no position.
inline constexpr std::int64_t notFoundLocation = std::numeric_limits<std::int64_t>::max();

/// No value, although the copy may have succeeded.
struct NullValue {
    friend bool operator==(const NullValue&, const NullValue&) = default;
};

/// A number that is no integer of 64 bits.
struct OtherNumber {
    double value = 0;

    friend bool operator==(const OtherNumber&, const OtherNumber&) = default;
};

/// An array with at least one member that is no element.
struct MixedArray {
    friend bool operator==(const MixedArray&, const MixedArray&) = default;
};

/// A boxed value that is no text range: a point, a size, ..., or a range that would not unbox.
struct OtherBoxedValue {
    friend bool operator==(const OtherBoxedValue&, const OtherBoxedValue&) = default;
};

/// A value of a kind that the logic never uses.
struct OtherValue {
    friend bool operator==(const OtherValue&, const OtherValue&) = default;
};

/// The value of an attribute, told apart as far as the readers need: a closed set, so that a null beside a success code
/// and a value of the wrong kind stay visible to them. An array with no members is an array of elements.
using AttributeValue = std::variant<NullValue, Text, bool, std::int64_t, OtherNumber, Element, std::vector<Element>,
                                    MixedArray, TextRange, OtherBoxedValue, OtherValue>;

}  // namespace lomaris
