#include "tests/service/service_world.h"

#include <chrono>
#include <functional>

namespace lomaris {
namespace {

using test::Lines;

using namespace std::chrono_literals;

class Service : public test::ServiceWorld {
protected:
    std::optional<BridgeError> errorOf(const std::function<void()>& operation) {
        return test::thrownBy([&] {
            operation();
            return 0;
        });
    }

    /// Returns every operation that only reads.
    [[nodiscard]] std::vector<std::function<void()>> reads() {
        return {[this] { static_cast<void>(service->readSelectionText(500, 500)); },
                [this] { static_cast<void>(service->readSelectionJSON(500, 500)); },
                [this] { static_cast<void>(service->compatibilityDiagnosticJSON()); },
                [this] { static_cast<void>(service->captureSelection({.allowClipboardFallback = true})); }};
    }
};

TEST_F(Service, ReturnsThePermissionWithoutPrompt) {
    EXPECT_TRUE(service->hasPermission(TrustPrompt::none));
    desktop.setTrusted(false);
    desktop.setPromptAnswer(true);
    EXPECT_FALSE(service->hasPermission(TrustPrompt::none));
    EXPECT_EQ(journal(),
              (Lines{"0.000000000 isProcessTrusted(none) -> true", "0.000000000 isProcessTrusted(none) -> false"}));
}

TEST_F(Service, ReturnsThePermissionAfterThePrompt) {
    desktop.setTrusted(false);
    desktop.setPromptAnswer(true);
    EXPECT_TRUE(service->hasPermission(TrustPrompt::ask));
    desktop.setPromptAnswer(false);
    EXPECT_FALSE(service->hasPermission(TrustPrompt::ask));
    EXPECT_EQ(journal(),
              (Lines{"0.000000000 isProcessTrusted(ask) -> true", "0.000000000 isProcessTrusted(ask) -> false"}));
}

TEST_F(Service, MakesNoCallOnConstruction) { EXPECT_EQ(journal(), Lines()); }

TEST_F(Service, ReadsTheSelectedTextUnchanged) {
    text.setText(u"a line\nof text \n", {0, 16});
    EXPECT_EQ(service->readSelectionText(500, 500), u"a line\nof text \n");
}

TEST_F(Service, CopiesAHiddenSelection) {
    hideSelection();
    EXPECT_EQ(service->readSelectionText(500, 500), u"brown fox");
    EXPECT_EQ(desktop.pasteboardContents(), clipboard);
}

TEST_F(Service, ReadsWithoutSearchingTheCopyCommand) {
    hideSelection();
    notes.addMenuBar({{u"Edit", {{u"Copy", u"c"}}}}).item(u"Edit", u"Copy").onAction(action::press, copies(u"menu"));
    EXPECT_EQ(service->readSelectionText(500, 500), u"brown fox");
    EXPECT_EQ(test::callsWith(desktop, "AXMenuBar"), 0U);
}

TEST_F(Service, WritesJsonWithUnescapedSlashesAndNoFinalLineFeed) {
    text.setText(u"1/a/b/2", {2, 3});
    EXPECT_EQ(service->readSelectionJSON(2, 1),
              "{\n"
              "  \"applicationName\" : \"Notes\",\n"
              "  \"bundleIdentifier\" : \"com.example.notes\",\n"
              "  \"contextAfter\" : \"/\",\n"
              "  \"contextBefore\" : \"1/\",\n"
              "  \"inputActivity\" : {\n"
              "    \"keyDownCount\" : 1,\n"
              "    \"leftMouseDownCount\" : 2,\n"
              "    \"otherMouseDownCount\" : 4,\n"
              "    \"rightMouseDownCount\" : 3\n"
              "  },\n"
              "  \"processIdentifier\" : 812,\n"
              "  \"selectedRange\" : {\n"
              "    \"length\" : 3,\n"
              "    \"location\" : 2\n"
              "  },\n"
              "  \"selectedText\" : \"a/b\",\n"
              "  \"selectionMethod\" : \"accessibility\",\n"
              "  \"supportsDirectReplacement\" : true\n"
              "}");
}

TEST_F(Service, EscapesSlashesOfDiagnostics) {
    const auto odd = desktop.addApplication(900, u"com/example", u"A/B");
    odd.element().answers(attribute::focusedUIElement, odd.addTextElement(u"xyz", TextRange{1, 1}).element());
    desktop.bringToFront(900);
    EXPECT_NE(service->selectionDiagnosticJSON().find("\"applicationName\" : \"A\\/B\""), std::string::npos);
    EXPECT_NE(service->compatibilityDiagnosticJSON().find("\"bundleIdentifier\" : \"com\\/example\""),
              std::string::npos);
}

TEST_F(Service, ChecksTheCompatibilityWith500UnitsOfContext) {
    text.setText(Text(501, u'a') + u"brown fox" + Text(502, u'b'), {501, 9});
    EXPECT_EQ(service->compatibilityDiagnosticJSON(),
              "{\n"
              "  \"applicationName\" : \"Notes\",\n"
              "  \"bundleIdentifier\" : \"com.example.notes\",\n"
              "  \"contextAfterLength\" : 500,\n"
              "  \"contextBeforeLength\" : 500,\n"
              "  \"schemaVersion\" : 1,\n"
              "  \"selectionLength\" : 9,\n"
              "  \"selectionMethod\" : \"accessibility\",\n"
              "  \"selectionReadable\" : true,\n"
              "  \"supportsDirectReplacement\" : true,\n"
              "  \"usesClipboardFallback\" : false\n"
              "}");
}

TEST_F(Service, ChecksTheCompatibilityOfAHiddenSelection) {
    hideSelection();
    const std::string json = service->compatibilityDiagnosticJSON();
    EXPECT_NE(json.find("\"selectionMethod\" : \"keyboardClipboardFallback\""), std::string::npos) << json;
    EXPECT_NE(json.find("\"usesClipboardFallback\" : true"), std::string::npos) << json;
}

TEST_F(Service, RethrowsIfNothingIsSelected) {
    text.select({3, 0});
    notes.onCopy(copies(u""));
    for (const auto& read : reads()) {
        EXPECT_EQ(errorOf(read), BridgeError::noTextSelected());
    }
    EXPECT_EQ(desktop.pasteboardContents(), clipboard);
}

TEST_F(Service, RethrowsIfTheTargetDoesNotCopy) {
    hideSelection();
    notes.onCopy(ignores());
    for (const auto& read : reads()) {
        EXPECT_EQ(errorOf(read), BridgeError::clipboardFallbackFailed(
                                     u"the target application did not respond to Cmd+C after 3 attempt(s)"));
    }
    EXPECT_EQ(desktop.now(), 4 * 3160ms);
    EXPECT_EQ(desktop.pasteboardContents(), clipboard);
}

TEST_F(Service, RethrowsIfPermissionIsRequired) {
    desktop.setTrusted(false);
    auto operations = reads();
    operations.emplace_back([this] { static_cast<void>(service->selectionDiagnosticJSON()); });
    operations.emplace_back([this] { service->replaceCurrentSelection(u"x", 500, 500); });
    operations.emplace_back([this] { static_cast<void>(service->captureSelectionOrChat({})); });
    for (const auto& operation : operations) {
        EXPECT_EQ(errorOf(operation), BridgeError::accessibilityPermissionRequired());
    }
}

}  // namespace
}  // namespace lomaris
