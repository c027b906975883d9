#pragma once

#include "platform/ax_error.h"
#include "text/text.h"

#include <cstdint>
#include <exception>
#include <optional>

namespace lomaris {

/// Every failure that the library reports, a closed set of thirteen cases; the one type that its operations throw. A
/// plain value: copied freely, compared by case and payload. Each case has one fixed English sentence for end users.
class BridgeError final : public std::exception {
public:
    enum class Case : std::uint8_t {
        focusedApplicationUnavailable,
        focusedElementUnavailable,
        selectedTextUnavailable,
        replacementFailed,
        clipboardFallbackFailed,
        invalidArguments,
        invalidInput,
        accessibilityPermissionRequired,
        noTextSelected,
        directReplacementUnsupported,
        clipboardFallbackDisabled,
        keyboardEventPermissionRequired,
        selectionChanged,
    };

    [[nodiscard]] static BridgeError focusedApplicationUnavailable(AXError code);
    /// `applicationName`: localized name of the application in front, absent where it has none or there is none.
    [[nodiscard]] static BridgeError focusedElementUnavailable(AXError code, std::optional<Text> applicationName);
    [[nodiscard]] static BridgeError selectedTextUnavailable(AXError code);
    [[nodiscard]] static BridgeError replacementFailed(AXError code);
    /// `detail`: a lower-case phrase without a full stop.
    [[nodiscard]] static BridgeError clipboardFallbackFailed(Text detail);
    /// `message`: a whole sentence, shown as it is; so for `invalidInput`.
    [[nodiscard]] static BridgeError invalidArguments(Text message);
    [[nodiscard]] static BridgeError invalidInput(Text message);
    [[nodiscard]] static BridgeError accessibilityPermissionRequired();
    [[nodiscard]] static BridgeError noTextSelected();
    [[nodiscard]] static BridgeError directReplacementUnsupported();
    [[nodiscard]] static BridgeError clipboardFallbackDisabled();
    [[nodiscard]] static BridgeError keyboardEventPermissionRequired();
    [[nodiscard]] static BridgeError selectionChanged();

    [[nodiscard]] Case errorCase() const { return case_; }

    /// The sentence for the user. Never absent; empty only where an empty message was given. Names and arguments in it
    /// stand unchanged.
    [[nodiscard]] Text errorDescription() const;

    /// The name of the case, for logs of a host that catches `std::exception`; users are shown `errorDescription`.
    [[nodiscard]] const char* what() const noexcept override;

    friend bool operator==(const BridgeError& a, const BridgeError& b) {
        return a.case_ == b.case_ && a.code_ == b.code_ && a.text_ == b.text_;
    }

private:
    explicit BridgeError(Case errorCase, AXError code = AXError::success, std::optional<Text> text = std::nullopt);

    Case case_;
    AXError code_;
    /// Application name, detail or message, as the case has it.
    std::optional<Text> text_;
};

}  // namespace lomaris
