#pragma once

#include "tests/macos/fake_core_foundation.h"

#include <CoreGraphics/CoreGraphics.h>

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {

/// The session's keyboard as the event services see it: the permission, what was made and posted, and the counters. At
/// most one at a time.
class FakeEvents {
public:
    FakeEvents();
    FakeEvents(const FakeEvents&) = delete;
    FakeEvents& operator=(const FakeEvents&) = delete;
    ~FakeEvents();

    bool mayPost = true;
    /// Every call ends with an exception.
    bool throws = false;
    /// What the user answers when asked for the permission.
    bool userGrants = true;
    int requestCount = 0;
    /// A line for each source and event that was made, in order: "source 1", "key 8 down from source 1".
    std::vector<std::string> made;
    /// A line for each event that was posted, in order: "key 8 down flags 100000 to tap 1".
    std::vector<std::string> posted;
    /// By state and type.
    std::map<std::pair<CGEventSourceStateID, CGEventType>, std::uint32_t> counters;

    /// For the doubles.
    static FakeEvents& current();
};

}  // namespace lomaris::test
