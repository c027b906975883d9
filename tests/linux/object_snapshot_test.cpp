#include "platform/linux/atspi/object_snapshot.h"

#include "platform/linux/atspi/accessibility_bus.h"
#include "tests/linux/fake_desktop.h"

#include <chrono>
#include <string>
#include <vector>

namespace lomaris::test {
namespace {

using atspi::State;
using atspi::States;

constexpr std::chrono::hours forLong{1};
constexpr std::chrono::milliseconds forNoTime{0};

const std::string path = "/org/a11y/atspi/accessible/7";
const std::string getItems = "Cache.GetItems";

class WalkSnapshot : public FakeDesktop {
protected:
    [[nodiscard]] BusConnection& bus() { return *bus_.connection(); }

    [[nodiscard]] ObjectReference reference(const std::string& where) { return {peer().name(), where}; }

    [[nodiscard]] ListedObject listed(const std::string& where, States states = States(0)) {
        return {reference(where), reference(atspi::rootPath), 0, {atspi::accessible}, 43, states.bits()};
    }

    [[nodiscard]] int listCount() { return peer().callCount(atspi::cachePath, getItems); }

private:
    AccessibilityBus bus_;
};

TEST_F(WalkSnapshot, HasTheListedObjects) {
    ListedObject object = listed(path, States::of({State::focused, State::readOnly}));
    object.parent = reference("/parent");
    object.childCount = 3;
    object.interfaces = {atspi::accessible, atspi::text};
    listObjects({listed("/other"), object});
    start();
    ObjectSnapshots snapshots(bus(), forLong);
    snapshots.take(peer().name());
    const ObjectSnapshot* const snapshot = snapshots.current(peer().name());
    ASSERT_NE(snapshot, nullptr);
    const ListedObject* const found = snapshot->find(reference(path));
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->object, object.object);
    EXPECT_EQ(found->parent, object.parent);
    EXPECT_EQ(found->childCount, 3);
    EXPECT_EQ(found->interfaces, object.interfaces);
    EXPECT_EQ(found->role, 43U);
    EXPECT_EQ(found->states, object.states);
}

TEST_F(WalkSnapshot, HasNoOtherObjects) {
    ListedObject stranger = listed("/stranger");
    stranger.object.name = ":1.999";
    listObjects({listed(path), listed("/defunct", States::of({State::defunct})), stranger});
    start();
    ObjectSnapshots snapshots(bus(), forLong);
    snapshots.take(peer().name());
    const ObjectSnapshot* const snapshot = snapshots.current(peer().name());
    ASSERT_NE(snapshot, nullptr);
    EXPECT_NE(snapshot->find(reference(path)), nullptr);
    for (const ObjectReference& object : {reference("/missing"), reference("/defunct"), reference("/stranger"),
                                          stranger.object, ObjectReference{":1.999", path}}) {
        EXPECT_EQ(snapshot->find(object), nullptr) << object.name << " " << object.path;
    }
    EXPECT_EQ(snapshots.current(":1.999"), nullptr);
}

TEST_F(WalkSnapshot, IsTakenOnceForAllStepsOfAWalk) {
    listObjects({listed(path)});
    start();
    ObjectSnapshots snapshots(bus(), forLong);
    EXPECT_EQ(snapshots.current(peer().name()), nullptr);
    snapshots.take(peer().name());
    snapshots.take(peer().name());
    EXPECT_NE(snapshots.current(peer().name()), nullptr);
    EXPECT_EQ(listCount(), 1);
}

TEST_F(WalkSnapshot, IsTakenAgainWhenItIsTooOld) {
    listObjects({listed(path)});
    start();
    ObjectSnapshots snapshots(bus(), forNoTime);
    snapshots.take(peer().name());
    EXPECT_EQ(snapshots.current(peer().name()), nullptr);
    snapshots.take(peer().name());
    EXPECT_EQ(listCount(), 2);
}

TEST_F(WalkSnapshot, IsNotTakenAgainSoonAfterItWasDropped) {
    listObjects({listed(path)});
    start();
    ObjectSnapshots snapshots(bus(), forLong);
    snapshots.take(peer().name());
    snapshots.drop();
    EXPECT_EQ(snapshots.current(peer().name()), nullptr);
    snapshots.take(peer().name());
    EXPECT_EQ(snapshots.current(peer().name()), nullptr);
    EXPECT_EQ(listCount(), 1);
}

TEST_F(WalkSnapshot, IsTakenOnlyOfKnownToolkits) {
    listObjects({listed(path)});
    peer().answer(atspi::rootPath, "Get Application.ToolkitName", stringProperty("Qt"));
    start();
    ObjectSnapshots snapshots(bus(), forNoTime);
    snapshots.take(peer().name());
    snapshots.take(peer().name());
    EXPECT_EQ(peer().callCount(), 1);
}

TEST_F(WalkSnapshot, IsRequestedOnceIfTheListIsMalformed) {
    listObjects({});
    peer().answer(atspi::cachePath, getItems, references({{peer().name(), path}}));
    start();
    ObjectSnapshots snapshots(bus(), forNoTime);
    snapshots.take(peer().name());
    snapshots.take(peer().name());
    EXPECT_EQ(snapshots.current(peer().name()), nullptr);
    EXPECT_EQ(listCount(), 1);
}

TEST_F(WalkSnapshot, IsNoneIfTheListIsTooLong) {
    listObjects(std::vector<ListedObject>(10001, listed(path)));
    start();
    ObjectSnapshots snapshots(bus(), forLong);
    snapshots.take(peer().name());
    EXPECT_EQ(snapshots.current(peer().name()), nullptr);
}

}  // namespace
}  // namespace lomaris::test
