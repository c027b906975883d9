#include "tests/linux/fake_desktop.h"

#include "platform/attributes.h"
#include "platform/linux/atspi/atspi_element.h"

#include <unistd.h>

#include <cstdlib>

namespace lomaris::test {

Values listedObjects(std::vector<ListedObject> objects) {
    return [objects = std::move(objects)](sd_bus_message* reply) {
        const auto appendReference = [reply](const ObjectReference& object) {
            sd_bus_message_append(reply, "(so)", object.name.c_str(), object.path.c_str());
        };
        std::int32_t index = 0;
        sd_bus_message_open_container(reply, 'a', "((so)(so)(so)iiassusau)");
        for (const ListedObject& each : objects) {
            sd_bus_message_open_container(reply, 'r', "(so)(so)(so)iiassusau");
            appendReference(each.object);
            appendReference({each.object.name, atspi::rootPath});
            appendReference(each.parent);
            sd_bus_message_append(reply, "ii", index++, each.childCount);
            strings(each.interfaces)(reply);
            sd_bus_message_append(reply, "sus", "a name", each.role, "a description");
            states(each.states)(reply);
            sd_bus_message_close_container(reply);
        }
        sd_bus_message_close_container(reply);
    };
}

void FakeDesktop::SetUp() {
    if (!PrivateBus::isAvailable()) {
        GTEST_SKIP() << "dbus-daemon is missing; install the Debian package dbus-daemon";
    }
    processIdentifier_ = getpid();
    bus_ = std::make_unique<PrivateBus>();
    setenv("DBUS_SESSION_BUS_ADDRESS", bus_->address().c_str(), 1);
    setenv("DISPLAY", ":0", 1);
    desktop_ = std::make_unique<FakePeer>(*bus_, std::vector<std::string>{"org.a11y.Bus", "org.a11y.atspi.Registry"});
    peer_ = std::make_unique<FakePeer>(*bus_);
    desktop_->answer("/org/a11y/bus", "org.a11y.Bus.GetAddress", string(bus_->address()));
    desktop_->answer("/org/a11y/bus", "Get org.a11y.Status.IsEnabled", booleanProperty(true));
    desktop_->answer(atspi::rootPath, "Accessible.GetChildren", references({{peer_->name(), atspi::rootPath}}));
    accessibility_ = makeLinuxAccessibility(workspace_);
}

void FakeDesktop::TearDown() {
    accessibility_.reset();
    peer_.reset();
    desktop_.reset();
    bus_.reset();
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    unsetenv("DISPLAY");
}

void FakeDesktop::start() {
    desktop_->start();
    peer_->start();
}

void FakeDesktop::addObject(const std::string& path, const std::vector<atspi::State>& objectStates,
                            const std::vector<std::string>& children) {
    std::vector<std::pair<std::string, std::string>> childReferences;
    for (const std::string& child : children) {
        childReferences.emplace_back(peer_->name(), child);
    }
    std::uint64_t bits = 0;
    for (const atspi::State state : objectStates) {
        bits |= atspi::States::of({state}).bits();
    }
    peer_->answer(path, "Accessible.GetState", states(bits));
    peer_->answer(path, "Get Accessible.ChildCount", integerProperty(static_cast<std::int32_t>(children.size())));
    peer_->answer(path, "Accessible.GetChildren", references(std::move(childReferences)));
}

void FakeDesktop::listObjects(std::vector<ListedObject> objects) {
    peer_->answer(atspi::rootPath, "Get Application.ToolkitName", stringProperty("gtk"));
    peer_->answer(atspi::rootPath, "Application.GetApplicationBusAddress", string(""));
    peer_->answer(atspi::cachePath, "Cache.GetItems", listedObjects(std::move(objects)));
}

void FakeDesktop::addText(const std::string& path, const std::string& bytes, int characterCount,
                          const std::vector<std::pair<int, int>>& selections, int caret) {
    peer_->answer(path, "Text.GetNSelections", integer(static_cast<std::int32_t>(selections.size())));
    peer_->answer(path, "Text.GetText", string(bytes));
    peer_->answer(path, "Get Text.CharacterCount", integerProperty(characterCount));
    peer_->answer(path, "Get Text.CaretOffset", integerProperty(caret));
    // If nothing is selected, one toolkit returns the caret as the selection.
    const auto [start, end] = selections.empty() ? std::pair(caret, caret) : selections.front();
    peer_->answer(path, "Text.GetSelection", integers(start, end));
}

Element FakeDesktop::object(const std::string& path) { return makeElement(ObjectReference{peer_->name(), path}); }

AttributeAnswer FakeDesktop::copyFocused() {
    return accessibility().copyAttribute(application(), attribute::focusedUIElement);
}

}  // namespace lomaris::test
