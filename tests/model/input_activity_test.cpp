#include "accessibility/model/input_activity.h"

#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lomaris {
namespace {

TEST(InputActivity, DiffersWhenAnyOneCounterDiffers) {
    const InputActivitySnapshot snapshot{1, 2, 3, 4};
    EXPECT_EQ(snapshot, (InputActivitySnapshot{1, 2, 3, 4}));
    EXPECT_FALSE(snapshot == (InputActivitySnapshot{9, 2, 3, 4}));
    EXPECT_FALSE(snapshot == (InputActivitySnapshot{1, 9, 3, 4}));
    EXPECT_FALSE(snapshot == (InputActivitySnapshot{1, 2, 9, 4}));
    EXPECT_FALSE(snapshot == (InputActivitySnapshot{1, 2, 3, 9}));
}

TEST(InputActivity, ReadsTheFourCountersInTheOrderOfItsFields) {
    SimulatedDesktop desktop;
    desktop.setInputCounters(
        {.keyDown = 1532, .leftMouseDown = 210, .rightMouseDown = 4, .otherMouseDown = 4294967295});
    EXPECT_EQ(sampleInputActivity(desktop.events()), (InputActivitySnapshot{1532, 210, 4, 4294967295}));
    const std::vector<std::string> expected = {
        "0.000000000 inputCounter(10) -> 1532",
        "0.000000000 inputCounter(1) -> 210",
        "0.000000000 inputCounter(3) -> 4",
        "0.000000000 inputCounter(25) -> 4294967295",
    };
    EXPECT_EQ(desktop.journal(), expected);
}

}  // namespace
}  // namespace lomaris
