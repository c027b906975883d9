#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace lomaris {

/// Units looked at together. A loop over so many, free of branches, is what compilers turn into vector instructions;
/// over fewer they do not.
inline constexpr std::size_t searchBlock = 32;

/// Index of the first unit at or after `start` that is `wanted`, or the length of `units`, which are bytes or UTF-16
/// units. Long stretches without one are passed over a block at a time: `wanted` must be cheap, as it is asked for all
/// of a block.
template <typename View, typename Predicate>
[[nodiscard]] std::size_t findFirst(View units, std::size_t start, Predicate wanted) {
    // Numbers as wide as the units, and of the sign for which every processor has a minimum.
    using Unit = typename View::value_type;
    using Offset = std::conditional_t<sizeof(Unit) == 1, std::uint8_t, std::int16_t>;
    constexpr auto none = static_cast<Offset>(searchBlock);
    std::size_t index = start;
    while (units.size() - index >= searchBlock) {
        const Unit* const block = units.data() + index;
        Offset first = none;
        for (Offset offset = 0; offset < none; ++offset) {
            const Offset candidate = wanted(block[offset]) ? offset : none;
            first = candidate < first ? candidate : first;
        }
        index += static_cast<std::size_t>(first);
        if (first != none) {
            return index;
        }
    }
    while (index < units.size() && !wanted(units[index])) {
        ++index;
    }
    return index;
}

}  // namespace lomaris
