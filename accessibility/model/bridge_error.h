#pragma once

#include "platform/ax_error.h"
#include "text/text.h"

#include <cstdint>
#include <exception>
#include <optional>

namespace lomaris {

/// Every failure that the library reports, a closed set of thirteen cases. The only type that its operations throw. A
/// copyable value, compared by case and payload. Each case has one fixed English sentence for users.
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
    /// `applicationName`: localized name of the front application; absent if it has none or no application is in front.
    [[nodiscard]] static BridgeError focusedElementUnavailable(AXError code, std::optional<Text> applicationName);
    [[nodiscard]] static BridgeError selectedTextUnavailable(AXError code);
    [[nodiscard]] static BridgeError replacementFailed(AXError code);
    /// `detail`: a lower-case phrase without a full stop.
    [[nodiscard]] static BridgeError clipboardFallbackFailed(Text detail);
    /// `message`: a whole sentence, shown unchanged. The same holds for `invalidInput`.
    [[nodiscard]] static BridgeError invalidArguments(Text message);
    [[nodiscard]] static BridgeError invalidInput(Text message);
    [[nodiscard]] static BridgeError accessibilityPermissionRequired();
    [[nodiscard]] static BridgeError noTextSelected();
    [[nodiscard]] static BridgeError directReplacementUnsupported();
    [[nodiscard]] static BridgeError clipboardFallbackDisabled();
    [[nodiscard]] static BridgeError keyboardEventPermissionRequired();
    [[nodiscard]] static BridgeError selectionChanged();

    [[nodiscard]] Case errorCase() const { return case_; }

    /// Returns the sentence for the user. Contains application names, details and messages unchanged; empty only if the
    /// case was created with an empty message.
    [[nodiscard]] Text errorDescription() const;

    /// Returns the name of the case, for the logs of a host that catches `std::exception`. Not for users.
    [[nodiscard]] const char* what() const noexcept override;

    friend bool operator==(const BridgeError& a, const BridgeError& b) {
        return a.case_ == b.case_ && a.code_ == b.code_ && a.text_ == b.text_;
    }

private:
    explicit BridgeError(Case errorCase, AXError code = AXError::success, std::optional<Text> text = std::nullopt);

    Case case_;
    AXError code_;
    /// The application name, detail or message, depending on the case.
    std::optional<Text> text_;
};

}  // namespace lomaris
