#pragma once

#include "platform/pasteboard.h"

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace lomaris {

/// An item that another program copies: types with their bytes, and promises that the program fulfils when a reader
/// requests the type. A promise that returns nullopt makes a type without data; one that returned bytes is not called
/// again.
struct CopiedItem {
    std::vector<std::pair<PasteboardType, Bytes>> data;
    std::vector<std::pair<PasteboardType, std::function<std::optional<Bytes>()>>> promises;
};

/// An item of the simulated pasteboard: the types that have bytes, in their order, and the types that are only
/// promised. Reading it fulfils no promise.
struct StandingItem {
    std::vector<std::pair<PasteboardType, Bytes>> data;
    std::vector<PasteboardType> promised;

    friend bool operator==(const StandingItem&, const StandingItem&) = default;
};

}  // namespace lomaris
