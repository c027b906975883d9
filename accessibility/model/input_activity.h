#pragma once

#include "platform/event_services.h"

#include <cstdint>

namespace lomaris {

/// A fingerprint of the user's input: how many events of four kinds the session has seen. Two snapshots are unchanged
/// only when all four counters are equal; nothing else can be read out of the numbers.
struct InputActivitySnapshot {
    std::uint32_t keyDownCount = 0;
    std::uint32_t leftMouseDownCount = 0;
    std::uint32_t rightMouseDownCount = 0;
    std::uint32_t otherMouseDownCount = 0;

    friend bool operator==(const InputActivitySnapshot&, const InputActivitySnapshot&) = default;
};

/// Reads the four counters, in the order of the fields.
[[nodiscard]] InputActivitySnapshot sampleInputActivity(EventServices& events);

}  // namespace lomaris
