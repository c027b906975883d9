// The contract suites on the services of macOS, with fake platform functions.

#include "platform/attributes.h"
#include "tests/macos/fake_platform_test.h"
#include "tests/platform/accessibility_contract.h"
#include "tests/platform/events_contract.h"

#include <memory>
#include <stdexcept>
#include <string>

namespace lomaris::test {
namespace {

constexpr ProcessIdentifier editor = 812;

/// A platform with only the services that are tested here; the others must not be used.
class PartialPlatform final : public Platform {
public:
    Accessibility& accessibility() override { return accessibility_; }
    EventServices& events() override { return events_; }
    Pasteboard& pasteboard() override { throw std::logic_error("there is no pasteboard here"); }
    Workspace& workspace() override { throw std::logic_error("there is no workspace here"); }
    Scheduling& scheduling() override { throw std::logic_error("there is no scheduling here"); }

private:
    macos::MacOSAccessibility accessibility_;
    macos::MacOSEventServices events_;
};

class FakeAccessibilityWorld final : public AccessibilityWorld {
public:
    FakeAccessibilityWorld() {
        const Held application = makeElementObject({editor, 0});
        const Held window = makeElementObject({editor, 1});
        const Held text = makeElementObject({editor, 2});
        answer({editor, 0}, attribute::role, makeString(u"AXApplication"));
        answer({editor, 0}, attribute::focusedWindow, window);
        answer({editor, 0}, attribute::focusedUIElement, text);
        answer({editor, 1}, attribute::role, makeString(u"AXWindow"));
        answer({editor, 1}, attribute::children, makeArray({text}));
        answer({editor, 2}, attribute::role, makeString(u"AXTextArea"));
        answer({0, 0}, attribute::focusedUIElement, text);
        desktop_.at({editor, 2}).settable.insert(std::string(attribute::selectedText));
        desktop_.at({editor, 2}).onSet = [this](const std::string&, CFTypeRef value) { return replace(value); };
        show();
    }

    ~FakeAccessibilityWorld() override {
        desktop_.end(editor);
        desktop_.end(0);
        EXPECT_EQ(unbalancedObjects(), "");
    }

    Platform& platform() override { return platform_; }
    ProcessIdentifier application() override { return editor; }
    void quitApplication() override { desktop_.end(editor); }

private:
    void answer(FakeElementKey key, std::string_view attribute, const Held& value) {
        desktop_.at(key).attributes[std::string(attribute)] = {kAXErrorSuccess, value};
    }

    void show() {
        answer({editor, 2}, attribute::value, makeString(text_));
        answer({editor, 2}, attribute::selectedText, makeString(text_.substr(location_, length_)));
        answer({editor, 2}, attribute::selectedTextRange,
               boxRange(static_cast<CFIndex>(location_), static_cast<CFIndex>(length_)));
    }

    ::AXError replace(CFTypeRef value) {
        const Text replacement = unitsOf(value);
        text_.replace(location_, length_, replacement);
        location_ += replacement.size();
        length_ = 0;
        show();
        return kAXErrorSuccess;
    }

    FakeAccessibility desktop_;
    PartialPlatform platform_;
    Text text_ = u"The quick brown fox";
    std::size_t location_ = 10;
    std::size_t length_ = 9;
};

class FakeEventsWorld final : public EventsWorld {
public:
    ~FakeEventsWorld() override { EXPECT_EQ(unbalancedObjects(), ""); }

    Platform& platform() override { return platform_; }

    void userTypes() override { ++keyboard_.counters[{kCGEventSourceStateCombinedSessionState, kCGEventKeyDown}]; }

private:
    FakeEvents keyboard_;
    PartialPlatform platform_;
};

INSTANTIATE_TEST_SUITE_P(MacOS, AccessibilityContract,
                         testing::Values(AccessibilityWorldMaker{
                             "OverDoubles", [] { return std::make_unique<FakeAccessibilityWorld>(); }}),
                         contractParamName);
INSTANTIATE_TEST_SUITE_P(MacOS, EventsContract,
                         testing::Values(EventsWorldMaker{"OverDoubles",
                                                          [] { return std::make_unique<FakeEventsWorld>(); }}),
                         contractParamName);

}  // namespace
}  // namespace lomaris::test
