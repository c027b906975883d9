// The latency of calls on the simulated desktop.

#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris::test {
namespace {

using std::chrono::milliseconds;

/// One object of each kind that has boundary calls.
struct Callee {
    SimulatedDesktop desktop;
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    Element element = notes.addTextElement(u"fox", {0, 3}).element();
    std::vector<std::unique_ptr<PasteboardItem>> items;
    std::unique_ptr<KeyStrokeEvents> events;

    Callee() {
        desktop.bringToFront(812);
        desktop.userCopies(u"mine");
        items = desktop.pasteboard().items();
        events = desktop.events().createKeyStroke({9, 0});
    }
};

struct Call {
    std::string_view name;
    std::function<void(Callee&)> make;
};

/// A `Call` that makes the boundary call and ignores its result.
template <typename Function>
Call call(std::string_view name, Function function) {
    return {name, [function](Callee& callee) { static_cast<void>(function(callee)); }};
}

const std::vector<Call>& calls() {
    static constexpr std::array<std::string_view, 1> names{attribute::role};
    static const std::vector<Call> all = {
        call("isProcessTrusted",
             [](Callee& c) { return c.desktop.accessibility().isProcessTrusted(TrustPrompt::none); }),
        call("applicationElement", [](Callee& c) { return c.desktop.accessibility().applicationElement(812); }),
        call("systemWideElement", [](Callee& c) { return c.desktop.accessibility().systemWideElement(); }),
        call("copyAttribute",
             [](Callee& c) { return c.desktop.accessibility().copyAttribute(c.element, attribute::role); }),
        call("copyElementAttribute",
             [](Callee& c) { return c.desktop.accessibility().copyElementAttribute(c.element, attribute::role); }),
        call("copyAttributes",
             [](Callee& c) { return c.desktop.accessibility().copyAttributes(std::array{c.element}, names); }),
        call("setAttribute",
             [](Callee& c) { return c.desktop.accessibility().setAttribute(c.element, attribute::role, true); }),
        call("isAttributeSettable",
             [](Callee& c) { return c.desktop.accessibility().isAttributeSettable(c.element, attribute::role); }),
        call("areAttributesSettable",
             [](Callee& c) {
                 return c.desktop.accessibility().areAttributesSettable(std::array{c.element}, attribute::role);
             }),
        call("performAction",
             [](Callee& c) { return c.desktop.accessibility().performAction(c.element, action::press); }),
        call("processIdentifier", [](Callee& c) { return c.desktop.accessibility().processIdentifier(c.element); }),
        call("containsIgnoringCase",
             [](Callee& c) { return c.desktop.accessibility().containsIgnoringCase(u"a", u"A"); }),
        call("items", [](Callee& c) { return c.desktop.pasteboard().items().size(); }),
        call("types", [](Callee& c) { return c.items[0]->types(); }),
        call("data", [](Callee& c) { return c.items[0]->data(PasteboardType(pasteboard_type::string)); }),
        call("string", [](Callee& c) { return c.desktop.pasteboard().string(); }),
        call("changeCount", [](Callee& c) { return c.desktop.pasteboard().changeCount(); }),
        call("clearContents", [](Callee& c) { return c.desktop.pasteboard().clearContents(), 0; }),
        call("writeItems", [](Callee& c) { return c.desktop.pasteboard().writeItems({}); }),
        call("preflightPostEventAccess", [](Callee& c) { return c.desktop.events().preflightPostEventAccess(); }),
        call("requestPostEventAccess", [](Callee& c) { return c.desktop.events().requestPostEventAccess(); }),
        call("createKeyStroke",
             [](Callee& c) {
                 return c.desktop.events().createKeyStroke({8, 0}) != nullptr;
             }),
        call("postToSession", [](Callee& c) { return c.desktop.events().postToSession(*c.events), 0; }),
        call("postToProcess", [](Callee& c) { return c.desktop.events().postToProcess(*c.events, 812), 0; }),
        call("inputCounter", [](Callee& c) { return c.desktop.events().inputCounter(InputEventType::keyDown); }),
        call("frontmostApplication", [](Callee& c) { return c.desktop.workspace().frontmostApplication(); }),
        call("runningApplication", [](Callee& c) { return c.desktop.workspace().runningApplication(812); }),
    };
    return all;
}

TEST(SimulatedCallLatency, DoesNotAffectOtherCalls) {
    for (const Call& slow : calls()) {
        Callee callee;
        callee.desktop.setLatencyOf(slow.name, milliseconds(7));
        for (const Call& each : calls()) {
            const Moment before = callee.desktop.now();
            each.make(callee);
            EXPECT_EQ(callee.desktop.now() - before, each.name == slow.name ? milliseconds(7) : milliseconds(0))
                << each.name << " while " << slow.name << " is slow";
        }
    }
}

TEST(SimulatedCallLatency, PassesBeforeTheCallHasAnEffect) {
    Callee callee;
    for (const std::string_view name : {"string", "clearContents", "postToSession"}) {
        callee.desktop.setLatencyOf(name, milliseconds(10));
    }
    callee.desktop.at(milliseconds(5), [&callee] { callee.desktop.userCopies(u"theirs"); });
    EXPECT_EQ(callee.desktop.pasteboard().string(), u"theirs");
    callee.desktop.at(milliseconds(15), [&callee] { callee.desktop.userCopies(u"again"); });
    callee.desktop.pasteboard().clearContents();
    EXPECT_EQ(callee.desktop.pasteboardContents(), std::vector<StandingItem>{});
    callee.desktop.events().postToSession(*callee.events);
    EXPECT_EQ(callee.desktop.postedKeyStrokes().back().moment, milliseconds(30));
}

TEST(SimulatedCallLatency, AffectsBackgroundBlocks) {
    Callee callee;
    callee.desktop.setLatencyOf("changeCount", milliseconds(10));
    Moment answered{0};
    callee.desktop.scheduling().runInBackground([&] {
        static_cast<void>(callee.desktop.pasteboard().changeCount());
        answered = callee.desktop.now();
    });
    callee.desktop.scheduling().runLoopSlice(milliseconds(20));
    EXPECT_EQ(answered, milliseconds(10));
}

}  // namespace
}  // namespace lomaris::test
