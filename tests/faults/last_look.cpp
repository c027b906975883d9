#include "tests/faults/last_look.h"

#include "platform/attributes.h"

#include <string_view>

namespace lomaris::test {
namespace {

/// The document when this attribute was last read before `position`; null if reading it failed.
const Document* documentAtReading(std::string_view attribute, const Happenings& happenings, std::size_t position) {
    while (position-- > 0) {
        const Happening& happening = happenings[position];
        if (happening.isCall("copyAttribute", attribute)) {
            return isValueRead(happening, attribute) ? &happening.document : nullptr;
        }
    }
    return nullptr;
}

/// The selection that the tool sees when it reads the selected text at `position`; nullopt if it sees none.
std::optional<Look> lookByReading(const Happenings& happenings, std::size_t position) {
    Look look{Look::Method::read, {}, std::nullopt};
    const Document* const atRange = documentAtReading(attribute::selectedTextRange, happenings, position);
    if (atRange != nullptr) {
        look.range = atRange->selection;
    }
    if (isValueRead(happenings[position], attribute::selectedText)) {
        look.selectedText = happenings[position].document.selectedText();
    }
    const Document* const atText = documentAtReading(attribute::value, happenings, position);
    if (look.selectedText.empty() && atRange != nullptr && atText != nullptr) {
        look.selectedText = Document{atText->text, atRange->selection}.selectedText();
    }
    return look.selectedText.empty() ? std::nullopt : std::optional(look);
}

}  // namespace

std::optional<Look> lastLookBefore(const Happenings& happenings, std::size_t position) {
    while (position-- > 0) {
        const Happening& happening = happenings[position];
        if (happening.who == Who::target) {
            return Look{Look::Method::copy, happening.document.selectedText(), std::nullopt};
        }
        if (happening.isCall("copyAttribute", attribute::selectedText)) {
            if (auto look = lookByReading(happenings, position)) {
                return look;
            }
        }
    }
    return std::nullopt;
}

std::optional<Look> decidingLookBefore(const Happenings& happenings, std::size_t position) {
    while (position-- > 0) {
        if (happenings[position].isCall("inputCounter")) {
            return lastLookBefore(happenings, position);
        }
    }
    return std::nullopt;
}

}  // namespace lomaris::test
