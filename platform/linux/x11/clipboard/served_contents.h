#pragma once

#include "platform/pasteboard.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris {

/// Bytes that a transfer to a slow reader may still need when the contents are long gone.
using SharedBytes = std::shared_ptr<const Bytes>;

/// How an X11 program describes the bytes of a target: the name of their type, and the bits of one unit (8, 16, 32).
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

/// What a selection owner offers to other programs. Main thread.
class ServedContents {
public:
    ServedContents() = default;
    virtual ~ServedContents() = default;

    /// The targets to offer, in order, each once, as long as the contents exist.
    [[nodiscard]] virtual std::vector<std::string_view> targets() const = 0;

    /// The reply for one of the targets, or nothing if there are no bytes for it.
    [[nodiscard]] virtual std::optional<ServedTarget> served(std::string_view target) = 0;

protected:
    ServedContents(const ServedContents&) = default;
    ServedContents(ServedContents&&) = default;
    ServedContents& operator=(const ServedContents&) = default;
    ServedContents& operator=(ServedContents&&) = default;
};

}  // namespace lomaris
