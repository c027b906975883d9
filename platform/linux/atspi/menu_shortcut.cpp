#include "platform/linux/atspi/menu_shortcut.h"

#include "text/code_points.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <vector>

namespace lomaris {

namespace {

/// Control in the table of modifiers. It has no bit: in the result, `noCommand` is absent.
constexpr std::int64_t command = 0;

struct NamedModifier {
    std::string_view name;
    std::int64_t bit;
};

constexpr std::array<NamedModifier, 9> modifierNames{{
    {"alt", menu_modifier::option},
    {"control", command},
    {"ctrl", command},
    {"ctl", command},
    {"meta", menu_modifier::control},
    {"mod1", menu_modifier::option},
    {"primary", command},
    {"shift", menu_modifier::shift},
    {"super", menu_modifier::control},
}};

char lowered(char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter; }

bool isSameWord(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char left, char right) { return lowered(left) == lowered(right); });
}

/// Collects the modifiers of a shortcut.
class Modifiers {
public:
    /// Returns false if the name is unknown.
    [[nodiscard]] bool add(std::string_view name) {
        const auto* const found = std::find_if(modifierNames.begin(), modifierNames.end(),
                                               [name](const auto& each) { return isSameWord(each.name, name); });
        if (found == modifierNames.end()) {
            return false;
        }
        bits_ |= found->bit;
        hasCommand_ = hasCommand_ || found->bit == command;
        return true;
    }

    [[nodiscard]] std::int64_t bits() const { return hasCommand_ ? bits_ : bits_ | menu_modifier::noCommand; }

private:
    std::int64_t bits_ = 0;
    bool hasCommand_ = false;
};

std::optional<MenuShortcut> shortcutOf(std::string_view key, const Modifiers& modifiers) {
    const Text character = textFromUtf8(key);
    if (character.empty() || codePointAt(character, 0).units != character.size()) {
        return std::nullopt;
    }
    return MenuShortcut{character, modifiers.bits()};
}

/// "<Primary><Shift>c"
std::optional<MenuShortcut> fromAngleBrackets(std::string_view shortcut) {
    Modifiers modifiers;
    while (shortcut.size() > 1 && shortcut.front() == '<') {
        const std::size_t end = shortcut.find('>');
        if (end == std::string_view::npos || !modifiers.add(shortcut.substr(1, end - 1))) {
            return std::nullopt;
        }
        shortcut.remove_prefix(end + 1);
    }
    return shortcutOf(shortcut, modifiers);
}

/// "Ctrl+Shift+C"; the key may be a plus itself ("Ctrl++").
std::optional<MenuShortcut> fromPlusSigns(std::string_view shortcut) {
    Modifiers modifiers;
    for (std::size_t end = shortcut.find('+', 0); end != std::string_view::npos && end > 0 && end + 1 < shortcut.size();
         end = shortcut.find('+')) {
        if (!modifiers.add(shortcut.substr(0, end))) {
            return std::nullopt;
        }
        shortcut.remove_prefix(end + 1);
    }
    return shortcutOf(shortcut, modifiers);
}

std::vector<std::string_view> split(std::string_view binding) {
    std::vector<std::string_view> parts;
    for (std::size_t end = binding.find(';'); end != std::string_view::npos; end = binding.find(';')) {
        parts.push_back(binding.substr(0, end));
        binding.remove_prefix(end + 1);
    }
    parts.push_back(binding);
    return parts;
}

/// True for three parts that are a mnemonic, the key sequence through the menus and the shortcut, not three shortcuts.
bool beginWithMnemonic(const std::vector<std::string_view>& parts) {
    constexpr std::size_t partCount = 3;
    return parts.size() == partCount && (parts[0].size() <= 1 || parts[0].front() == '<');
}

}  // namespace

std::optional<MenuShortcut> menuShortcutFromKeyBinding(std::string_view binding) {
    const std::vector<std::string_view> parts = split(binding);
    const std::string_view shortcut = beginWithMnemonic(parts) ? parts.back() : parts.front();
    return shortcut.starts_with('<') ? fromAngleBrackets(shortcut) : fromPlusSigns(shortcut);
}

}  // namespace lomaris
