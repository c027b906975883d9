#include "platform/linux/x11/keyboard/key_codes.h"

#include <array>

namespace lomaris {

namespace {

struct KeyMeaning {
    std::uint16_t keyCode;
    Keysym keysym;
};

constexpr std::array<KeyMeaning, 3> meanings{{
    {8, 'c'},
    {9, 'v'},
    // BackSpace.
    {51, 0xff08},
}};

}  // namespace

std::optional<Keysym> keysymOfKeyCode(std::uint16_t keyCode) {
    for (const KeyMeaning& meaning : meanings) {
        if (meaning.keyCode == keyCode) {
            return meaning.keysym;
        }
    }
    return std::nullopt;
}

}  // namespace lomaris
