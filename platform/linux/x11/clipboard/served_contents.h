#pragma once

#include "platform/pasteboard.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris {

/// Bytes with shared ownership, as a transfer to a slow reader may last longer than the contents.
using SharedBytes = std::shared_ptr<const Bytes>;

/// The type and format of a property: the name of the type atom, and the number of bits of one unit (8, 16 or 32).
struct PropertyForm {
    std::string type;
    std::uint8_t format = 8;

    friend bool operator==(const PropertyForm&, const PropertyForm&) = default;
};

/// The reply to a request for one target.
struct ServedTarget {
    PropertyForm form;
    SharedBytes bytes;
};

/// The contents that a selection owner offers to other programs. Main thread.
class ServedContents {
public:
    ServedContents() = default;
    virtual ~ServedContents() = default;

    /// The targets to offer, in order and without duplicates. The names are valid as long as the contents.
    [[nodiscard]] virtual std::vector<std::string_view> targets() const = 0;

    /// The reply for a target. nullopt if there are no bytes for it.
    [[nodiscard]] virtual std::optional<ServedTarget> served(std::string_view target) = 0;

protected:
    ServedContents(const ServedContents&) = default;
    ServedContents(ServedContents&&) = default;
    ServedContents& operator=(const ServedContents&) = default;
    ServedContents& operator=(ServedContents&&) = default;
};

}  // namespace lomaris
