#include "accessibility/adapter/selection_policies.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace lomaris {
namespace {

const std::vector<Text> fileManagers = {u"com.apple.finder", u"com.cocoatech.PathFinder", u"com.binarynights.ForkLift"};
const std::vector<Text> terminals = {u"com.apple.Terminal",    u"com.googlecode.iterm2",  u"dev.warp.Warp",
                                     u"com.mitchellh.ghostty", u"com.github.wez.wezterm", u"org.alacritty",
                                     u"net.kovidgoyal.kitty"};
const std::vector<Text> webApplications = {
    u"com.apple.Safari",          u"com.google.Chrome",   u"com.microsoft.edgemac",      u"com.brave.Browser",
    u"com.operasoftware.Opera",   u"org.mozilla.firefox", u"company.thebrowser.Browser", u"com.microsoft.VSCode",
    u"com.visualstudio.code.oss", u"com.vscodium",
};

std::string shown(const Text& identifier) { return {identifier.begin(), identifier.end()}; }

constexpr auto isGenuine = ShortcutSelectionPolicy::isGenuineTextSelection;

TEST(ShortcutSelectionPolicy, RefusesAnEmptyTextInAnyApplication) {
    EXPECT_FALSE(isGenuine(std::nullopt, u"", std::nullopt));
    EXPECT_FALSE(isGenuine(u"com.example.notes", u"", TextRange{0, 3}));
    EXPECT_FALSE(isGenuine(u"com.apple.Terminal", u"", TextRange{0, 3}));
}

TEST(ShortcutSelectionPolicy, AcceptsTextWithoutABundleIdentifier) {
    EXPECT_TRUE(isGenuine(std::nullopt, u"x", std::nullopt));
}

TEST(ShortcutSelectionPolicy, RefusesAnySelectionInAFileManager) {
    for (const auto& identifier : fileManagers) {
        EXPECT_FALSE(isGenuine(identifier, u"x", TextRange{0, 1})) << shown(identifier);
        EXPECT_FALSE(isGenuine(identifier + u".helper", u"x", TextRange{0, 1})) << shown(identifier);
        EXPECT_TRUE(ShortcutSelectionPolicy::isFileManager(identifier)) << shown(identifier);
    }
    EXPECT_FALSE(ShortcutSelectionPolicy::isFileManager(std::nullopt));
    EXPECT_FALSE(ShortcutSelectionPolicy::isFileManager(u"com.apple.Finder"));
}

TEST(ShortcutSelectionPolicy, AcceptsATerminalOnlyWithANonEmptyRange) {
    for (const auto& identifier : terminals) {
        EXPECT_FALSE(isGenuine(identifier, u"x", std::nullopt)) << shown(identifier);
        EXPECT_FALSE(isGenuine(identifier, u"x", TextRange{5, 0})) << shown(identifier);
        EXPECT_FALSE(isGenuine(identifier, u"x", TextRange{5, -1})) << shown(identifier);
        EXPECT_TRUE(isGenuine(identifier, u"x", TextRange{5, 3})) << shown(identifier);
        EXPECT_FALSE(isGenuine(identifier + u"-beta", u"x", std::nullopt)) << shown(identifier);
    }
}

TEST(ShortcutSelectionPolicy, AcceptsTextInAnyOtherApplication) {
    EXPECT_TRUE(isGenuine(u"com.example.notes", u"x", std::nullopt));
    EXPECT_TRUE(isGenuine(u"com.google.Chrome", u"x", std::nullopt));
}

TEST(ShortcutSelectionPolicy, ComparesIdentifiersCaseSensitively) {
    EXPECT_TRUE(isGenuine(u"com.apple.Finder", u"x", std::nullopt));
    EXPECT_TRUE(isGenuine(u"com.apple.terminal", u"x", std::nullopt));
}

TEST(WebContentCompatibility, RequiresTheClipboardForBrowsersAndCodeEditors) {
    for (const auto& identifier : webApplications) {
        EXPECT_TRUE(WebContentCompatibility::requiresClipboard(identifier)) << shown(identifier);
        EXPECT_TRUE(WebContentCompatibility::requiresClipboard(identifier + u".canary")) << shown(identifier);
        EXPECT_TRUE(WebContentCompatibility::requiresClipboard(identifier + u"x")) << shown(identifier);
    }
}

TEST(WebContentCompatibility, DoesNotMatchAShortenedIdentifier) {
    for (const auto& identifier : webApplications) {
        EXPECT_FALSE(WebContentCompatibility::requiresClipboard(identifier.substr(0, identifier.size() - 1)))
            << shown(identifier);
    }
}

TEST(WebContentCompatibility, DoesNotMatchAnythingElse) {
    EXPECT_FALSE(WebContentCompatibility::requiresClipboard(std::nullopt));
    EXPECT_FALSE(WebContentCompatibility::requiresClipboard(u""));
    EXPECT_FALSE(WebContentCompatibility::requiresClipboard(u"com.google.chrome"));
    EXPECT_FALSE(WebContentCompatibility::requiresClipboard(u"x.com.google.Chrome"));
    EXPECT_FALSE(WebContentCompatibility::requiresClipboard(u"com.google.Chrome\u0301"));
}

}  // namespace
}  // namespace lomaris
