#include "tests/real/expected_clipboard.h"

#include "platform/pasteboard.h"

#include <cstddef>

namespace lomaris::test {

ClipboardContents pastedContents(const std::string& text) {
    const std::string concealed(pasteboard_type::concealed);
    const std::string transient(pasteboard_type::transient);
    return {{"UTF8_STRING", PropertyValue{"UTF8_STRING", 8, text}},
            {"text/plain;charset=utf-8", PropertyValue{"text/plain;charset=utf-8", 8, text}},
            {"text/plain", PropertyValue{"text/plain", 8, text}},
            {"STRING", PropertyValue{"STRING", 8, text}},
            {"TEXT", PropertyValue{"STRING", 8, text}},
            {concealed, PropertyValue{concealed, 8, ""}},
            {transient, PropertyValue{transient, 8, ""}},
            {"x-kde-passwordManagerHint", PropertyValue{"x-kde-passwordManagerHint", 8, "secret"}}};
}

std::string describe(const ClipboardContents& contents) {
    constexpr std::size_t longestText = 60;
    if (contents.empty()) {
        return "no targets";
    }
    std::string description;
    for (const auto& [target, value] : contents) {
        description += description.empty() ? target : "; " + target;
        if (!value) {
            description += ": refused";
            continue;
        }
        if (value->type != target) {
            description += " as " + value->type;
        }
        description += ": " + std::to_string(value->bytes.size()) + " bytes";
        if (value->bytes.size() <= longestText) {
            description += " \"" + value->bytes + '"';
        }
    }
    return description;
}

}  // namespace lomaris::test
