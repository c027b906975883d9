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

/// Identifies an element of a process. Element 0 is the application's root; process 0 with element 0 is the system-wide
/// element.
struct FakeElementKey {
    pid_t process = 0;
    int element = 0;

    friend auto operator<=>(const FakeElementKey&, const FakeElementKey&) = default;
};

/// The result of copying one attribute. With an error the value is normally null, but a faulty platform may return one.
struct FakeAnswer {
    ::AXError error = kAXErrorSuccess;
    Held value;
};

/// How copying several attributes behaves.
enum class FakeBatch {
    /// Returns a boxed error for each attribute whose single copy would fail, and CFNull for a success without a value.
    truthful,
    /// Returns CFNull for each attribute without a value, whatever the reason.
    nullForErrors,
    /// Returns a boxed success code for each attribute without a value.
    boxedSuccessForErrors,
    failing,
    /// Fails, but returns an array with invalid contents.
    failingWithArray,
    succeedingWithoutArray,
    tooShort,
    tooLong
};

/// The accessibility data of other processes, and the requests sent to them, in order. At most one instance at a time;
/// without an instance no element returns a result.
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
        /// Called when a settable attribute is set; if it is empty, setting succeeds.
        std::function<::AXError(const std::string& attribute, CFTypeRef value)> onSet;
        ::AXError settableError = kAXErrorSuccess;
        ::AXError processError = kAXErrorSuccess;
    };

    /// The state of an element, which is created by the first call.
    State& at(FakeElementKey key) { return states_[key]; }
    /// Ends a process: its elements are invalid from now on.
    void end(pid_t process);

    FakeBatch batch = FakeBatch::truthful;
    bool isTrusted = true;
    /// If true, every call that sends a request to another process or to the system throws an exception.
    bool throws = false;
    /// How often the permission prompt was shown.
    int promptCount = 0;
    std::vector<std::string> crossings;

    /// For use by the fake platform functions.
    static FakeAccessibility* current();
    State* find(FakeElementKey key);

private:
    std::map<FakeElementKey, State> states_;
};

/// An element, as another process would return it.
[[nodiscard]] Held makeElementObject(FakeElementKey key);

/// Boxed values: a range, a point, a point that unboxes as any requested type, an error, and a box whose type is a
/// range but which does not unbox.
[[nodiscard]] Held boxRange(CFIndex location, CFIndex length);
[[nodiscard]] Held boxPoint();
[[nodiscard]] Held boxCarelessPoint();
[[nodiscard]] Held boxError(::AXError error);
[[nodiscard]] Held boxBrokenRange();

}  // namespace lomaris::test
