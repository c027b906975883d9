#pragma once

#include "accessibility/model/context_limits.h"
#include "text/text.h"

#include <optional>
#include <variant>

namespace lomaris {

inline constexpr ContextLimits defaultContextLimits{.before = 500, .after = 500};

/// The parsed command. `delay` is in seconds, 0 to 60; limits are 0 to 10000.
namespace command {

struct PermissionStatus {
    bool prompt = false;
    friend bool operator==(const PermissionStatus&, const PermissionStatus&) = default;
};

struct ReadSelection {
    double delay = 0;
    ContextLimits limits = defaultContextLimits;
    bool json = false;
    friend bool operator==(const ReadSelection&, const ReadSelection&) = default;
};

struct ReplaceSelection {
    double delay = 0;
    /// If absent, the text is read from standard input. May be present and empty.
    std::optional<Text> replacement;
    ContextLimits limits = defaultContextLimits;
    friend bool operator==(const ReplaceSelection&, const ReplaceSelection&) = default;
};

struct ReplaceSelectionRequest {
    double delay = 0;
    ContextLimits limits = defaultContextLimits;
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
