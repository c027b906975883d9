#pragma once

#include "platform/attribute_value.h"
#include "text/text.h"

#include <array>
#include <optional>

namespace lomaris {

/// Bundle identifiers of applications that need special treatment. An entry matches identifiers that begin with it,
/// compared by character and case-sensitively.
namespace bundle_prefixes {

inline constexpr std::array<TextView, 3> fileManagerBundlePrefixes = {
    u"com.apple.finder",
    u"com.cocoatech.PathFinder",
    u"com.binarynights.ForkLift",
};

inline constexpr std::array<TextView, 7> terminalBundlePrefixes = {
    u"com.apple.Terminal",     u"com.googlecode.iterm2", u"dev.warp.Warp",        u"com.mitchellh.ghostty",
    u"com.github.wez.wezterm", u"org.alacritty",         u"net.kovidgoyal.kitty",
};

inline constexpr std::array<TextView, 7> browserBundlePrefixes = {
    u"com.apple.Safari",        u"com.google.Chrome",   u"com.microsoft.edgemac",      u"com.brave.Browser",
    u"com.operasoftware.Opera", u"org.mozilla.firefox", u"company.thebrowser.Browser",
};

inline constexpr std::array<TextView, 3> codeEditorBundlePrefixes = {
    u"com.microsoft.VSCode",
    u"com.visualstudio.code.oss",
    u"com.vscodium",
};

}  // namespace bundle_prefixes

/// Decides what counts as selected text when the user invokes the assistant by its shortcut. Pure functions.
namespace ShortcutSelectionPolicy {

/// True if the application is a file manager, in which the user selects files.
[[nodiscard]] bool isFileManager(const std::optional<Text>& bundleIdentifier);

/// True if the user selected text: the text is not empty, the application is not a file manager, and in a terminal the
/// range has at least one UTF-16 unit.
[[nodiscard]] bool isGenuineTextSelection(const std::optional<Text>& bundleIdentifier, TextView selectedText,
                                          const std::optional<TextRange>& selectedRange);

}  // namespace ShortcutSelectionPolicy

/// Decides for which applications the selection is read through the clipboard, because accessibility does not read and
/// write their web content reliably. Pure functions.
namespace WebContentCompatibility {

/// True if the application is a browser or code editor.
[[nodiscard]] bool requiresClipboard(const std::optional<Text>& bundleIdentifier);

}  // namespace WebContentCompatibility

}  // namespace lomaris
