#pragma once

#include "text/text.h"

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <variant>

/// A Core Foundation for tests: objects on the heap with real reference counts, behaving as the public documentation
/// says. Every object that is made is known until its last reference goes; touching one after that ends the process,
/// and what is left when a test ends can be listed. One thread.
namespace lomaris::test {

/// Kinds of objects; the numbers are arbitrary, as they are on the platform.
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

/// Base of all objects. A constant is shared by the whole process; its count moves, but it never goes.
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

/// The object behind a reference. Ends the process where there is none, or none any more.
[[nodiscard]] const FakeObject& objectAt(CFTypeRef reference);

/// Whether the object is still there.
[[nodiscard]] bool isAlive(CFTypeRef reference);

/// Ends the process, saying why: for what would crash on the platform.
[[noreturn]] void fakeCrash(const std::string& why);

/// What is not balanced: objects that are left, and constants that were retained or released once too often; a line
/// each, empty where all is well.
[[nodiscard]] std::string unbalancedObjects();

/// Makes one of the calls that can fail answer null: the first such call from now on is number 1.
class FakeFaults {
public:
    static void failCall(int number);
    /// Nothing fails any more.
    static void clear();
    /// Whether the call that was to fail has come.
    [[nodiscard]] static bool hasFailed();
    /// For the doubles: counts a call that can fail, and answers whether it must.
    [[nodiscard]] static bool strikes();
};

/// A reference that a test holds, released with the last copy.
using Held = std::shared_ptr<const void>;

/// Takes over a reference that a Create or Copy call answered; null is held as null.
[[nodiscard]] Held held(CFTypeRef created);
/// Shares a constant.
[[nodiscard]] Held heldConstant(CFTypeRef constant);

using NumberStorage = std::variant<std::int8_t, std::int32_t, std::int64_t, float, double>;

[[nodiscard]] Held makeString(TextView text);
[[nodiscard]] Held makeNumber(NumberStorage number);
[[nodiscard]] Held makeArray(std::initializer_list<Held> members);
/// An object of a kind that nobody here knows.
[[nodiscard]] Held makeDate();

/// The UTF-16 units of a string object.
[[nodiscard]] Text unitsOf(CFTypeRef string);
/// The value of a key in a dictionary, borrowed, or null.
[[nodiscard]] CFTypeRef valueOfKey(CFDictionaryRef dictionary, TextView key);

/// Whether an array or a dictionary retains what it holds, as one must that is handed to the platform.
[[nodiscard]] bool retainsItsMembers(CFTypeRef collection);

/// The language of the user's current locale, until it is set again. Under "tr" and "az" the
/// lower case of "I" has no dot.
void setUserLanguage(const std::string& language);

}  // namespace lomaris::test
