#pragma once

#include "tests/x11/clipboard_other_owner.h"
#include "tests/x11/clipboard_other_reader.h"
#include "tests/x11/clipboard_world.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace lomaris::test {

/// The contents of the clipboard by target, as a program reads them that pastes. Without TARGETS, MULTIPLE and
/// TIMESTAMP.
using ClipboardContents = std::map<std::string, std::optional<PropertyValue>>;

[[nodiscard]] inline ClipboardContents clipboardContents() {
    OtherReader reader;
    ClipboardContents contents;
    for (const std::string& target : reader.targets()) {
        if (target != "TARGETS" && target != "MULTIPLE" && target != "TIMESTAMP") {
            contents[target] = reader.read(target);
        }
    }
    return contents;
}

/// The contents that the user copied before the tool runs: words with formatting, and a picture.
class UserClipboard {
public:
    /// The contents.
    [[nodiscard]] static ClipboardContents contents() {
        return {{"UTF8_STRING", PropertyValue{"UTF8_STRING", 8, words()}},
                {"image/png", PropertyValue{"image/png", 8, longBytes(50000)}},
                {"text/html", PropertyValue{"text/html", 8, markup()}}};
    }

    /// True if the clipboard has exactly these contents.
    [[nodiscard]] static bool isIntact() { return clipboardContents() == contents(); }

private:
    static std::string words() { return "the user's \xf0\x9f\x91\x8b words"; }
    static std::string markup() { return "<b>the user's</b> words"; }

    OtherOwner owner_{{{"UTF8_STRING", {"", 8, words()}},
                       {"text/html", {"", 8, markup()}},
                       {"image/png", {"", 8, longBytes(50000)}}}};
};

}  // namespace lomaris::test
