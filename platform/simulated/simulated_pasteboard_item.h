#pragma once

#include "platform/pasteboard.h"

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace lomaris {

/// An item that another program copies: bytes that are there at once, and promises that it keeps when a reader asks. A
/// promise that answers nothing is a type without data; one that answers bytes is not asked again.
struct CopiedItem {
    std::vector<std::pair<PasteboardType, Bytes>> data;
    std::vector<std::pair<PasteboardType, std::function<std::optional<Bytes>()>>> promises;
};

/// An item as it stands on the simulated pasteboard: the bytes that are there, in their order, and the types that are
/// still only promised. Looking at it asks nobody.
struct StandingItem {
    std::vector<std::pair<PasteboardType, Bytes>> data;
    std::vector<PasteboardType> promised;

    friend bool operator==(const StandingItem&, const StandingItem&) = default;
};

}  // namespace lomaris
