#pragma once

#include "tests/macos/fake_core_foundation.h"

#include <ApplicationServices/ApplicationServices.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris::test {

/// Which element of which process; element 0 is the application's own, and process 0 with element 0 the system-wide
/// one.
struct FakeElementKey {
    pid_t process = 0;
    int element = 0;

    friend auto operator<=>(const FakeElementKey&, const FakeElementKey&) = default;
};

/// What a copy of one attribute answers. Beside an error the value should be null; a platform that misbehaves hands one
/// over all the same.
struct FakeAnswer {
    ::AXError error = kAXErrorSuccess;
    Held value;
};

/// How the platform answers a copy of several attributes.
enum class FakeBatch {
    /// A boxed error for each attribute that a single copy would refuse, the null object for a success without a value.
    truthful,
    /// The null object for each attribute without a value, whatever the reason.
    nullForErrors,
    /// A boxed success for each attribute without a value.
    boxedSuccessForErrors,
    failing,
    /// With an array that means nothing.
    failingWithArray,
    succeedingWithoutArray,
    tooShort,
    tooLong
};

/// What other processes show of themselves over the Accessibility interface, and the calls that crossed into them, in
/// order. At most one at a time; without one no element answers.
class FakeAccessibility {
public:
    FakeAccessibility();
    FakeAccessibility(const FakeAccessibility&) = delete;
    FakeAccessibility& operator=(const FakeAccessibility&) = delete;
    ~FakeAccessibility();

    struct State {
        std::map<std::string, FakeAnswer, std::less<>> attributes;
        std::set<std::string, std::less<>> settable;
        std::map<std::string, ::AXError, std::less<>> actions;
        /// Called for an attribute that can be set; success without it.
        std::function<::AXError(const std::string& attribute, CFTypeRef value)> onSet;
        ::AXError settableError = kAXErrorSuccess;
        ::AXError processError = kAXErrorSuccess;
    };

    /// The element, which is there from the first call on.
    State& at(FakeElementKey key) { return states_[key]; }
    /// Ends a process: its elements are invalid from now on.
    void end(pid_t process);

    FakeBatch batch = FakeBatch::truthful;
    bool isTrusted = true;
    /// Every call that asks another process or the system ends with an exception.
    bool throws = false;
    /// How often the user was asked for the permission.
    int promptCount = 0;
    std::vector<std::string> crossings;

    /// For the doubles.
    static FakeAccessibility* current();
    State* find(FakeElementKey key);

private:
    std::map<FakeElementKey, State> states_;
};

/// An element as another process would hand it out.
[[nodiscard]] Held makeElementObject(FakeElementKey key);

/// Boxed values: a range, a point, a point that unboxes as whatever it is asked for, an error, and a box that says it
/// holds a range and does not unbox.
[[nodiscard]] Held boxRange(CFIndex location, CFIndex length);
[[nodiscard]] Held boxPoint();
[[nodiscard]] Held boxCarelessPoint();
[[nodiscard]] Held boxError(::AXError error);
[[nodiscard]] Held boxBrokenRange();

}  // namespace lomaris::test
