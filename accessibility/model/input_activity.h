#pragma once

#include "platform/event_services.h"

#include <cstdint>

namespace lomaris {

/// The number of input events of four kinds that the session has received. There was no input between two snapshots if
/// all four counters are equal; the numbers have no other meaning.
struct InputActivitySnapshot {
    std::uint32_t keyDownCount = 0;
    std::uint32_t leftMouseDownCount = 0;
    std::uint32_t rightMouseDownCount = 0;
    std::uint32_t otherMouseDownCount = 0;

    friend bool operator==(const InputActivitySnapshot&, const InputActivitySnapshot&) = default;
};

/// Samples the four counters, in the order of the fields.
[[nodiscard]] InputActivitySnapshot sampleInputActivity(EventServices& events);

}  // namespace lomaris
