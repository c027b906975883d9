#pragma once

#include "tests/macos/fake_core_foundation.h"

#include <CoreGraphics/CoreGraphics.h>

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {

/// The session's keyboard, as the event services see it: the permission, the events created and posted, and the
/// counters. At most one instance at a time.
class FakeEvents {
public:
    FakeEvents();
    FakeEvents(const FakeEvents&) = delete;
    FakeEvents& operator=(const FakeEvents&) = delete;
    ~FakeEvents();

    bool mayPost = true;
    /// If true, every call throws an exception.
    bool throws = false;
    /// The user's reply to the permission prompt.
    bool userGrants = true;
    int requestCount = 0;
    /// One line for each source and event that was created, in order: "source 1", "key 8 down from source 1".
    std::vector<std::string> made;
    /// One line for each event that was posted, in order: "key 8 down flags 100000 to tap 1".
    std::vector<std::string> posted;
    /// By state and type.
    std::map<std::pair<CGEventSourceStateID, CGEventType>, std::uint32_t> counters;

    /// For use by the fake platform functions.
    static FakeEvents& current();
};

}  // namespace lomaris::test
