#pragma once

#include "platform/attribute_value.h"
#include "text/text.h"

#include <array>
#include <optional>

namespace lomaris {

/// Bundle identifiers of applications that are treated in a special way. An identifier matches an entry when it begins
/// with it, character by character, letter case included.
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

/// What counts as a selection of text when the user invokes the assistant by its shortcut. Pure functions.
namespace ShortcutSelectionPolicy {

/// Whether the application is a file manager, whose selection is of files.
[[nodiscard]] bool isFileManager(const std::optional<Text>& bundleIdentifier);

/// Whether the user really selected text: some text, not in a file manager, and in a terminal only with a range of at
/// least one UTF-16 unit.
[[nodiscard]] bool isGenuineTextSelection(const std::optional<Text>& bundleIdentifier, TextView selectedText,
                                          const std::optional<TextRange>& selectedRange);

}  // namespace ShortcutSelectionPolicy

/// Which applications show web content that accessibility does not read and write dependably. Pure functions.
namespace WebContentCompatibility {

/// Whether the application's selection goes through the clipboard: it is a browser or a code editor.
[[nodiscard]] bool requiresClipboard(const std::optional<Text>& bundleIdentifier);

}  // namespace WebContentCompatibility

}  // namespace lomaris
