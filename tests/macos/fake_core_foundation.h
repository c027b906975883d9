#pragma once

#include "text/text.h"

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <variant>

/// A Core Foundation for tests: objects on the heap with real reference counts, with the documented behaviour. Every
/// object is registered until its last reference is released. Accessing a released object ends the process, and the
/// objects that are left when a test ends can be listed. One thread only.
namespace lomaris::test {

/// Type identifiers of objects; the numbers are arbitrary, as on the platform.
enum class FakeType : CFTypeID {
    string = 101,
    boolean,
    number,
    array,
    dictionary,
    null,
    locale,
    date,
    element,
    boxedValue,
    eventSource,
    event
};

/// Base of all objects. A constant is shared by the whole process; its reference count changes, but it is never freed.
struct FakeObject {
    enum class Lifetime { counted, constant };

    explicit FakeObject(FakeType kind, Lifetime span = Lifetime::counted);
    FakeObject(const FakeObject&) = delete;
    FakeObject& operator=(const FakeObject&) = delete;
    virtual ~FakeObject();

    [[nodiscard]] virtual bool equals(const FakeObject& other) const { return this == &other; }

    FakeType type;
    Lifetime lifetime;
    mutable long references;
};

/// The object behind a reference. Ends the process if the reference is null or the object was freed.
[[nodiscard]] const FakeObject& objectAt(CFTypeRef reference);

/// True if the object has not been freed.
[[nodiscard]] bool isAlive(CFTypeRef reference);

/// Ends the process with a message, for a call that would crash on the platform.
[[noreturn]] void fakeCrash(const std::string& why);

/// Lists the objects that are left, and the constants that were retained or released too often, one on each line; empty
/// if all is balanced.
[[nodiscard]] std::string unbalancedObjects();

/// Makes one of the calls that can fail return null. Calls are counted from now on; the first is number 1.
class FakeFaults {
public:
    static void failCall(int number);
    /// No call fails from now on.
    static void clear();
    /// True if the call that was to fail has been made.
    [[nodiscard]] static bool hasFailed();
    /// For use by the fake platform functions: counts a call that can fail and returns whether it must.
    [[nodiscard]] static bool strikes();
};

/// A reference owned by a test, released with the last copy.
using Held = std::shared_ptr<const void>;

/// Takes ownership of the result of a Create or Copy call; null stays null.
[[nodiscard]] Held held(CFTypeRef created);
/// Retains a constant.
[[nodiscard]] Held heldConstant(CFTypeRef constant);

using NumberStorage = std::variant<std::int8_t, std::int32_t, std::int64_t, float, double>;

[[nodiscard]] Held makeString(TextView text);
[[nodiscard]] Held makeNumber(NumberStorage number);
[[nodiscard]] Held makeArray(std::initializer_list<Held> members);
/// An object of a type that the product does not handle.
[[nodiscard]] Held makeDate();

/// The UTF-16 units of a string object.
[[nodiscard]] Text unitsOf(CFTypeRef string);
/// The value of a key in a dictionary, borrowed; null if there is none.
[[nodiscard]] CFTypeRef valueOfKey(CFDictionaryRef dictionary, TextView key);

/// True if an array or a dictionary retains its members, as required for collections that are passed to the platform.
[[nodiscard]] bool retainsItsMembers(CFTypeRef collection);

/// Sets the language of the user's current locale. In "tr" and "az" the lower case of "I" has no dot.
void setUserLanguage(const std::string& language);

}  // namespace lomaris::test
