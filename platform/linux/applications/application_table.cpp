#include "platform/linux/applications/application_table.h"

#include <algorithm>
#include <array>

namespace lomaris::applications {

namespace {

using enum EditingKeys;

constexpr std::array table{
    // Browsers and code editors: Control+C copies, Control+V pastes.
    // support.mozilla.org, "Keyboard shortcuts", Editing.
    Application{"firefox", "org.mozilla.firefox"},
    Application{"firefox-esr", "org.mozilla.firefox"},
    Application{"firefox-aurora", "org.mozilla.firefoxdeveloperedition"},
    Application{"firefox-dev", "org.mozilla.firefoxdeveloperedition"},
    Application{"firefox-beta", "org.mozilla.firefox"},
    Application{"firefox-nightly", "org.mozilla.firefox"},
    // support.google.com/chrome, "Chrome keyboard shortcuts", Webpage shortcuts; the other browsers on Chromium alike.
    Application{"google-chrome", "com.google.Chrome"},
    Application{"google-chrome-beta", "com.google.Chrome.beta"},
    Application{"google-chrome-unstable", "com.google.Chrome.dev"},
    Application{"chromium", "org.chromium.Chromium"},
    Application{"chromium-browser", "org.chromium.Chromium"},
    Application{"microsoft-edge", "com.microsoft.edgemac"},
    Application{"microsoft-edge-beta", "com.microsoft.edgemac.Beta"},
    Application{"microsoft-edge-dev", "com.microsoft.edgemac.Dev"},
    Application{"brave-browser", "com.brave.Browser"},
    Application{"brave-browser-beta", "com.brave.Browser.beta"},
    Application{"brave-browser-nightly", "com.brave.Browser.nightly"},
    Application{"opera", "com.operasoftware.Opera"},
    Application{"opera beta", "com.operasoftware.OperaNext"},
    Application{"opera developer", "com.operasoftware.OperaDeveloper"},
    // code.visualstudio.com/docs, "Keyboard shortcuts for Linux", Basic editing.
    Application{"code", "com.microsoft.VSCode"},
    Application{"code - insiders", "com.microsoft.VSCodeInsiders"},
    Application{"vscodium", "com.vscodium"},
    Application{"code - oss", "com.visualstudio.code.oss"},
    Application{"code-oss", "com.visualstudio.code.oss"},

    // Terminals in which Control+Shift+C copies, and does nothing if nothing is selected. The latter is not documented;
    // it was tested with the versions in Debian 12, except for WezTerm.
    // alacritty-bindings(5): C with Control|Shift is Copy.
    Application{"alacritty", "org.alacritty", controlShiftToCopy},
    // Edit menu of Cool Retro Term, Copy.
    Application{"cool-retro-term", "", controlShiftToCopy},
    // Settings of Deepin Terminal, Shortcuts, Copy.
    Application{"deepin-terminal", "", controlShiftToCopy},
    // Help of GNOME Terminal, "Keyboard shortcuts", Edit.
    Application{"gnome-terminal", "", controlShiftToCopy},
    // Settings schema guake.keybindings.local, clipboard-copy.
    Application{"guake", "", controlShiftToCopy},
    // kitty(1), Keyboard shortcuts, "Copy to clipboard".
    Application{"kitty", "net.kovidgoyal.kitty", controlShiftToCopy},
    // Edit menu of LXTerminal, Copy.
    Application{"lxterminal", "", controlShiftToCopy},
    // Settings schema org.mate.terminal.keybindings, copy.
    Application{"mate-terminal", "", controlShiftToCopy},
    // Edit menu of QTerminal, "Copy Selection".
    Application{"qterminal", "", controlShiftToCopy},
    // sakura(1), Defaults.
    Application{"sakura", "", controlShiftToCopy},
    // terminology(1), Key bindings.
    Application{"terminology", "", controlShiftToCopy},
    // Preferences of Tilda, Keybindings, Copy.
    Application{"tilda", "", controlShiftToCopy},
    // Settings schema com.gexperts.Tilix.Keybindings, terminal-copy.
    Application{"tilix", "", controlShiftToCopy},
    // wezterm.org, "Default Key Assignments": CTRL+SHIFT c is CopyTo="Clipboard".
    Application{"org.wezfurlong.wezterm", "com.github.wez.wezterm", controlShiftToCopy},
    // Xfce Terminal user guide (docs.xfce.org), Shortcuts; Edit menu, Copy.
    Application{"xfce4-terminal", "", controlShiftToCopy},

    // Terminals in which Control+Shift+C copies, but interrupts the program if nothing is selected. That was tested
    // with the versions in Debian 12, except for Ghostty. Konsole Handbook, The Edit Menu; Yakuake shows Konsole's
    // terminal.
    Application{"konsole", "", none},
    Application{"yakuake", "", none},
    // terminator(1), Keybindings, Copy.
    Application{"terminator", "", none},
    // Keyboard Shortcuts of GNOME Console, Copy.
    Application{"kgx", "", none},
    Application{"org.gnome.console", "", none},
    // ghostty.org, "Custom Keybindings": bindings may be performed only if there is something to copy.
    Application{"com.mitchellh.ghostty", "", none},

    // Terminals that copy with another key, or only with the mouse; Control+C interrupts.
    // xterm(1), "Default key bindings": none copies to CLIPBOARD. uxterm(1) and koi8rxterm(1) set the class.
    Application{"xterm", "", none},
    Application{"uxterm", "", none},
    Application{"koi8rxterm", "", none},
    // urxvt(1), Clipboard: Control+Alt+C. Its own class, and the one that it shares with rxvt(1).
    Application{"urxvt", "", none},
    Application{"rxvt", "", none},
    // Eterm(1), Actions: no key has the action copy.
    Application{"eterm", "", none},
    // mrxvt(1) and aterm(1), descendants of rxvt: the mouse copies.
    Application{"mrxvt", "", none},
    Application{"aterm", "", none},
    // mlterm(1), Selection: the mouse copies.
    Application{"mlterm", "", none},
    // kterm(1), a descendant of xterm: the mouse copies.
    Application{"kterm", "", none},
    // PuTTY User Manual, "Copying and pasting text": the mouse copies. pterm(1) is the same program.
    Application{"pterm", "", none},
    Application{"putty", "", none},
    // st(1): Control+Shift+C, but users change its keys in its source. The class is that of its terminal type.
    Application{"st-256color", "", none},
    Application{"st", "", none},
    // termit(1), Keybindings: Control+Insert.
    Application{"termit", "", none},
    // zutty(1) names no key.
    Application{"zutty", "", none},
    // Warp, Hyper and Tabby: the key bindings are in their settings. None was tested.
    Application{"dev.warp.warp", "dev.warp.Warp", none},
    Application{"hyper", "", none},
    Application{"tabby", "", none},

    // Editors with editing commands of their own.
    // GNU Emacs Manual, "Killing and Moving Text": Control+C is a prefix; Control+W and Alt+W.
    Application{"emacs", "", none},
    Application{"xemacs", "", none},
    // Vim, ":help CTRL-C" and ":help gui-clipboard": Control+C ends a command. The class is the same under the names
    // gview, gvimdiff, rgvim and evim and with `vim -g`; that was tested. The same for the graphical ones of Neovim.
    Application{"gvim", "", none},
    Application{"nvim-qt", "", none},
    Application{"neovide", "", none},
};

constexpr char smallLetter(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

}  // namespace

std::span<const Application> applicationTable() { return table; }

const Application* findApplication(std::string_view className) {
    const auto* const found = std::ranges::find_if(table, [&](const Application& application) {
        return std::ranges::equal(className, application.className, {}, smallLetter);
    });
    return found == table.end() ? nullptr : found;
}

}  // namespace lomaris::applications
