#include "platform/linux/atspi/object_source.h"

#include "platform/linux/atspi/accessibility_bus.h"
#include "tests/linux/fake_desktop.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lomaris::test {
namespace {

using atspi::State;
using atspi::States;

const std::string path = "/org/a11y/atspi/accessible/7";
const std::vector<std::string> interfaces{atspi::accessible, atspi::text};

/// All data of an object that a source can read.
struct Answers {
    std::optional<std::uint32_t> role;
    std::optional<std::uint64_t> states;
    std::optional<std::vector<std::string>> interfaces;
    std::optional<std::int32_t> childCount;
    std::optional<ObjectReference> parent;

    friend bool operator==(const Answers&, const Answers&) = default;
};

class ObjectSourceTest : public FakeDesktop {
protected:
    [[nodiscard]] BusConnection& bus() { return *bus_.connection(); }

    [[nodiscard]] ObjectReference reference(const std::string& where) { return {peer().name(), where}; }

    /// Adds an object that returns other data than the list has.
    void addLiveObject() {
        addObject(path, {State::focused}, {"/a", "/b"});
        peer().answer(path, "Accessible.GetRole", unsignedInteger(40));
        peer().answer(path, "Accessible.GetInterfaces", strings({atspi::accessible}));
        peer().answer(path, "Get Accessible.Parent", referenceProperty(peer().name(), "/parent"));
    }
    [[nodiscard]] Answers liveAnswers() {
        return {40, States::of({State::focused}).bits(), std::vector<std::string>{atspi::accessible}, 2,
                reference("/parent")};
    }

    [[nodiscard]] ListedObject listed(std::int32_t childCount) {
        return {
            reference(path), reference("/listed"), childCount, interfaces, 43, States::of({State::editable}).bits()};
    }
    [[nodiscard]] Answers listedAnswers(std::int32_t childCount) {
        return {43, States::of({State::editable}).bits(), interfaces, childCount, reference("/listed")};
    }

    [[nodiscard]] Answers answersFrom(const ObjectSource& source) {
        Answers answers;
        const ObjectReference object = reference(path);
        source.askRole(object, [&](const auto& value, const BusReply&) { answers.role = value; });
        source.askStates(object, [&](const auto& value, const BusReply&) {
            answers.states = value ? std::optional(value->bits()) : std::nullopt;
        });
        source.askInterfaces(object, [&](const auto& value, const BusReply&) { answers.interfaces = value; });
        source.askChildCount(object, [&](const auto& value, const BusReply&) { answers.childCount = value; });
        source.askParent(object, [&](const auto& value, const BusReply&) { answers.parent = value; });
        source.bus().finish();
        return answers;
    }

private:
    AccessibilityBus bus_;
};

TEST_F(ObjectSourceTest, UsesTheObjectWithoutASnapshot) {
    addLiveObject();
    start();
    EXPECT_EQ(answersFrom(ObjectSource(bus())), liveAnswers());
}

TEST_F(ObjectSourceTest, UsesTheSnapshotWithoutACall) {
    addLiveObject();
    start();
    const ObjectSnapshot snapshot(peer().name(), {listed(3)});
    EXPECT_EQ(answersFrom(ObjectSource(bus(), &snapshot)), listedAnswers(3));
    EXPECT_EQ(peer().callCount(), 0);
}

TEST_F(ObjectSourceTest, UsesTheObjectIfTheSnapshotLacksIt) {
    addLiveObject();
    start();
    const ObjectSnapshot snapshot(peer().name(), {});
    EXPECT_EQ(answersFrom(ObjectSource(bus(), &snapshot)), liveAnswers());
}

TEST_F(ObjectSourceTest, RequestsTheChildCountIfTheListLacksIt) {
    addLiveObject();
    start();
    const ObjectSnapshot snapshot(peer().name(), {listed(-1)});
    EXPECT_EQ(answersFrom(ObjectSource(bus(), &snapshot)), listedAnswers(2));
    EXPECT_EQ(peer().callCount(), 1);
}

TEST_F(ObjectSourceTest, ReportsTheReasonIfTheObjectIsGone) {
    peer().answerError(path, "Accessible.GetRole", "org.freedesktop.DBus.Error.UnknownObject");
    start();
    std::optional<BusFailure> failure;
    ObjectSource(bus()).askRole(reference(path), [&failure](const auto& role, const BusReply& reply) {
        EXPECT_EQ(role, std::nullopt);
        failure = reply.failure();
    });
    bus().finish();
    EXPECT_EQ(failure, BusFailure::unknownObject);
}

}  // namespace
}  // namespace lomaris::test
