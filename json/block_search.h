#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace lomaris {

/// Units examined per block. Compilers vectorize a branch-free loop over 32 units, but not over fewer.
inline constexpr std::size_t searchBlock = 32;

/// Returns the index of the first unit at or after `start` for which `wanted` returns true, or the size of `units` if
/// there is none. `units` are bytes or UTF-16 units. `wanted` is called for every unit of a block, also after the first
/// match, so it must be cheap and have no side effects.
template <typename View, typename Predicate>
[[nodiscard]] std::size_t findFirst(View units, std::size_t start, Predicate wanted) {
    // As wide as a unit, and with the signedness for which every processor has a vector minimum.
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
