#include "accessibility/adapter/macos_accessibility_adapter.h"

#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <utility>

namespace lomaris {
namespace {

TEST(Adapter, OwnsASharedPlatform) {
    auto desktop = std::make_shared<SimulatedDesktop>();
    const std::weak_ptr<SimulatedDesktop> watched = desktop;
    {
        MacOSAccessibilityAdapter adapter{std::shared_ptr<Platform>(std::move(desktop))};
        ASSERT_FALSE(watched.expired());
        EXPECT_TRUE(adapter.platform().accessibility().isProcessTrusted(TrustPrompt::none));
    }
    EXPECT_TRUE(watched.expired());
}

TEST(Adapter, DoesNotOwnABorrowedPlatform) {
    SimulatedDesktop desktop;
    { const MacOSAccessibilityAdapter adapter{desktop}; }
    EXPECT_TRUE(desktop.accessibility().isProcessTrusted(TrustPrompt::none));
}

TEST(Adapter, ServesThePastedTextIfDestroyedBeforeTheRestore) {
    std::optional<Bytes> pasted;
    auto desktop = std::make_shared<SimulatedDesktop>();
    auto notes = desktop->addApplication(812, u"com.example.notes", u"Notes");
    auto text = notes.addTextElement(u"The quick brown fox", TextRange{10, 9});
    text.answersSettable(attribute::selectedText, {AXError::success, false});
    notes.element().answers(attribute::focusedUIElement, text.element());
    notes.onPaste([world = desktop.get(), &pasted] {
        world->readPasteboardAsAnotherProgram(PasteboardType(pasteboard_type::string),
                                              [&pasted](std::optional<Bytes> bytes) { pasted = std::move(bytes); });
    });
    desktop->bringToFront(812);

    auto adapter = std::make_unique<MacOSAccessibilityAdapter>(std::shared_ptr<Platform>(std::move(desktop)));
    const auto snapshot = adapter->readSelection({.allowClipboardFallback = true}, SelectionPurpose::standard);
    adapter->replaceSelection(snapshot, u"red fox", {.allowClipboardFallback = true, .justVerified = true});
    EXPECT_EQ(pasted, std::nullopt);
    adapter.reset();
    // The destructor of the platform provided the promised data.
    EXPECT_EQ(pasted, "red fox");
}

}  // namespace
}  // namespace lomaris
