#pragma once

#include "text/text.h"

#include <cstdint>
#include <optional>
#include <variant>

namespace lomaris {

/// The default context limit, in UTF-16 units.
inline constexpr std::int64_t defaultContextLimit = 500;

/// The parsed command. `delay` is in seconds, 0 to 60; limits are UTF-16 units of context, 0 to 10000.
namespace command {

struct PermissionStatus {
    bool prompt = false;
    friend bool operator==(const PermissionStatus&, const PermissionStatus&) = default;
};

struct ReadSelection {
    double delay = 0;
    std::int64_t beforeLimit = defaultContextLimit;
    std::int64_t afterLimit = defaultContextLimit;
    bool json = false;
    friend bool operator==(const ReadSelection&, const ReadSelection&) = default;
};

struct ReplaceSelection {
    double delay = 0;
    /// If absent, the text is read from standard input. May be present and empty.
    std::optional<Text> replacement;
    std::int64_t beforeLimit = defaultContextLimit;
    std::int64_t afterLimit = defaultContextLimit;
    friend bool operator==(const ReplaceSelection&, const ReplaceSelection&) = default;
};

struct ReplaceSelectionRequest {
    double delay = 0;
    std::int64_t beforeLimit = defaultContextLimit;
    std::int64_t afterLimit = defaultContextLimit;
    friend bool operator==(const ReplaceSelectionRequest&, const ReplaceSelectionRequest&) = default;
};

struct DiagnoseSelection {
    double delay = 0;
    friend bool operator==(const DiagnoseSelection&, const DiagnoseSelection&) = default;
};

struct CompatibilityCheck {
    double delay = 0;
    friend bool operator==(const CompatibilityCheck&, const CompatibilityCheck&) = default;
};

struct Help {
    friend bool operator==(const Help&, const Help&) = default;
};

}  // namespace command

/// One command. Compared by value.
using BridgeCommand = std::variant<command::PermissionStatus, command::ReadSelection, command::ReplaceSelection,
                                   command::ReplaceSelectionRequest, command::DiagnoseSelection,
                                   command::CompatibilityCheck, command::Help>;

}  // namespace lomaris
