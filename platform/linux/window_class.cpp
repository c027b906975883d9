#include "platform/linux/window_class.h"

#include <algorithm>
#include <array>

namespace lomaris {

namespace {

struct KnownClass {
    std::string_view className;
    std::string_view identifier;
};

/// Class names in small letters.
constexpr std::array knownClasses{
    KnownClass{"firefox", "org.mozilla.firefox"},
    KnownClass{"firefox-esr", "org.mozilla.firefox"},
    KnownClass{"firefox-aurora", "org.mozilla.firefoxdeveloperedition"},
    KnownClass{"firefox-dev", "org.mozilla.firefoxdeveloperedition"},
    KnownClass{"firefox-beta", "org.mozilla.firefox"},
    KnownClass{"firefox-nightly", "org.mozilla.firefox"},
    KnownClass{"google-chrome", "com.google.Chrome"},
    KnownClass{"google-chrome-beta", "com.google.Chrome.beta"},
    KnownClass{"google-chrome-unstable", "com.google.Chrome.dev"},
    KnownClass{"chromium", "org.chromium.Chromium"},
    KnownClass{"chromium-browser", "org.chromium.Chromium"},
    KnownClass{"microsoft-edge", "com.microsoft.edgemac"},
    KnownClass{"microsoft-edge-beta", "com.microsoft.edgemac.Beta"},
    KnownClass{"microsoft-edge-dev", "com.microsoft.edgemac.Dev"},
    KnownClass{"brave-browser", "com.brave.Browser"},
    KnownClass{"brave-browser-beta", "com.brave.Browser.beta"},
    KnownClass{"brave-browser-nightly", "com.brave.Browser.nightly"},
    KnownClass{"opera", "com.operasoftware.Opera"},
    KnownClass{"opera beta", "com.operasoftware.OperaNext"},
    KnownClass{"opera developer", "com.operasoftware.OperaDeveloper"},
    KnownClass{"code", "com.microsoft.VSCode"},
    KnownClass{"code - insiders", "com.microsoft.VSCodeInsiders"},
    KnownClass{"vscodium", "com.vscodium"},
    KnownClass{"code - oss", "com.visualstudio.code.oss"},
    KnownClass{"code-oss", "com.visualstudio.code.oss"},
    KnownClass{"alacritty", "org.alacritty"},
    KnownClass{"kitty", "net.kovidgoyal.kitty"},
    KnownClass{"org.wezfurlong.wezterm", "com.github.wez.wezterm"},
    KnownClass{"dev.warp.warp", "dev.warp.Warp"},
};

char smallLetter(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool isEqualInSmallLetters(std::string_view text, std::string_view small) {
    return std::ranges::equal(text, small, {}, smallLetter);
}

}  // namespace

WindowClass windowClassFromProperty(std::string_view bytes) {
    const std::size_t first = std::min(bytes.find('\0'), bytes.size());
    WindowClass result{.instanceName = std::string(bytes.substr(0, first)), .className = {}};
    if (first < bytes.size()) {
        const std::string_view rest = bytes.substr(first + 1);
        result.className = rest.substr(0, rest.find('\0'));
    }
    return result;
}

std::optional<std::string_view> identifierOfWindowClass(std::string_view className) {
    const auto* const known = std::ranges::find_if(
        knownClasses, [&](const KnownClass& entry) { return isEqualInSmallLetters(className, entry.className); });
    return known == knownClasses.end() ? std::nullopt : std::optional(known->identifier);
}

}  // namespace lomaris
