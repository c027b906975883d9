#include "platform/linux/x11/clipboard/clipboard_targets.h"

#include "text/utf8.h"

#include <algorithm>
#include <array>

namespace lomaris {

namespace {

// The last four have side effects (ICCCM 2.6.3; SAVE_TARGETS is that of clipboard managers).
constexpr std::array<std::string_view, 7> noContents{
    clipboard_target::targets, clipboard_target::multiple, clipboard_target::timestamp, "SAVE_TARGETS", "DELETE",
    "INSERT_SELECTION",        "INSERT_PROPERTY",
};

}  // namespace

bool isContentsTarget(std::string_view target) {
    return !target.empty() && target.size() <= longestTargetName &&
           std::find(noContents.begin(), noContents.end(), target) == noContents.end();
}

PasteboardType typeOfTarget(std::string_view target) {
    return PasteboardType(target == clipboard_target::utf8String ? pasteboard_type::string : target);
}

std::string targetOfType(std::string_view type) {
    return std::string(type == pasteboard_type::string ? clipboard_target::utf8String : type);
}

std::string utf8FromLatin1(std::string_view bytes) {
    Text text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        text.push_back(static_cast<unsigned char>(byte));
    }
    return utf8FromText(text);
}

std::optional<std::string> latin1FromUtf8(std::string_view bytes) {
    const std::optional<Text> text = textFromValidUtf8(bytes);
    if (!text) {
        return std::nullopt;
    }
    std::string latin1;
    latin1.reserve(text->size());
    for (const char16_t unit : *text) {
        if (unit > 0xFF) {
            return std::nullopt;
        }
        latin1.push_back(static_cast<char>(static_cast<unsigned char>(unit)));
    }
    return latin1;
}

}  // namespace lomaris
