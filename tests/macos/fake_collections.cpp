#include "tests/macos/fake_core_foundation.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

using lomaris::test::fakeCrash;
using lomaris::test::FakeFaults;
using lomaris::test::FakeObject;
using lomaris::test::FakeType;
using lomaris::test::NumberStorage;
using lomaris::test::objectAt;

struct __CFBoolean final : FakeObject {
    explicit __CFBoolean(bool truth) : FakeObject(FakeType::boolean, Lifetime::constant), value(truth) {}

    bool value;
};

struct __CFNumber final : FakeObject {
    explicit __CFNumber(NumberStorage storage) : FakeObject(FakeType::number), value(storage) {}

    [[nodiscard]] bool equals(const FakeObject& other) const override {
        return value == static_cast<const __CFNumber&>(other).value;
    }

    NumberStorage value;
};

struct __CFArray final : FakeObject {
    __CFArray(std::vector<const void*> values, const CFArrayCallBacks* functions)
        : FakeObject(FakeType::array), members(std::move(values)), callBacks(functions) {
        for (const void*& member : members) {
            if (callBacks != nullptr) {
                member = callBacks->retain(kCFAllocatorDefault, member);
            }
        }
    }

    __CFArray(const __CFArray&) = delete;
    __CFArray& operator=(const __CFArray&) = delete;

    ~__CFArray() override {
        for (const void* const member : members) {
            if (callBacks != nullptr) {
                callBacks->release(kCFAllocatorDefault, member);
            }
        }
    }

    std::vector<const void*> members;
    const CFArrayCallBacks* callBacks;
};

struct __CFDictionary final : FakeObject {
    __CFDictionary(std::vector<std::pair<const void*, const void*>> pairs, const CFDictionaryKeyCallBacks* forKeys,
                   const CFDictionaryValueCallBacks* forValues)
        : FakeObject(FakeType::dictionary),
          entries(std::move(pairs)),
          keyCallBacks(forKeys),
          valueCallBacks(forValues) {
        for (auto& [key, value] : entries) {
            key = keyCallBacks == nullptr ? key : keyCallBacks->retain(kCFAllocatorDefault, key);
            value = valueCallBacks == nullptr ? value : valueCallBacks->retain(kCFAllocatorDefault, value);
        }
    }

    __CFDictionary(const __CFDictionary&) = delete;
    __CFDictionary& operator=(const __CFDictionary&) = delete;

    ~__CFDictionary() override {
        for (const auto& [key, value] : entries) {
            if (keyCallBacks != nullptr) {
                keyCallBacks->release(kCFAllocatorDefault, key);
            }
            if (valueCallBacks != nullptr) {
                valueCallBacks->release(kCFAllocatorDefault, value);
            }
        }
    }

    std::vector<std::pair<const void*, const void*>> entries;
    const CFDictionaryKeyCallBacks* keyCallBacks;
    const CFDictionaryValueCallBacks* valueCallBacks;
};

namespace {

const void* retainMember(CFAllocatorRef /*allocator*/, const void* member) { return CFRetain(member); }
void releaseMember(CFAllocatorRef /*allocator*/, const void* member) { CFRelease(member); }
Boolean equalMembers(const void* first, const void* second) { return CFEqual(first, second); }

template <typename Kind>
const Kind& as(CFTypeRef reference, FakeType type, const char* name) {
    const FakeObject& object = objectAt(reference);
    if (object.type != type) {
        fakeCrash(std::string("something else was used as ") + name);
    }
    return static_cast<const Kind&>(object);
}

const __CFArray& arrayAt(CFArrayRef array) { return as<__CFArray>(array, FakeType::array, "an array"); }

/// True if 64 bits represent the number exactly.
bool isInteger(double number) {
    constexpr double limit = 9223372036854775808.0;
    return std::trunc(number) == number && number >= -limit && number < limit;
}

}  // namespace

const CFBooleanRef kCFBooleanTrue = new __CFBoolean(true);
const CFBooleanRef kCFBooleanFalse = new __CFBoolean(false);

CFTypeID CFBooleanGetTypeID() { return static_cast<CFTypeID>(FakeType::boolean); }

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
    return as<__CFBoolean>(boolean, FakeType::boolean, "a boolean").value ? 1 : 0;
}

CFTypeID CFNumberGetTypeID() { return static_cast<CFTypeID>(FakeType::number); }

CFNumberRef CFNumberCreate(CFAllocatorRef /*allocator*/, CFNumberType type, const void* value) {
    if (FakeFaults::strikes()) {
        return nullptr;
    }
    if (type == kCFNumberSInt64Type) {
        return new __CFNumber(*static_cast<const std::int64_t*>(value));
    }
    return new __CFNumber(*static_cast<const double*>(value));
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
    const auto store = [type, value](auto stored) -> bool {
        if (type == kCFNumberDoubleType) {
            const auto converted = static_cast<double>(stored);
            *static_cast<double*>(value) = converted;
            return !std::is_same_v<decltype(stored), std::int64_t> ||
                   (isInteger(converted) && static_cast<std::int64_t>(converted) == static_cast<std::int64_t>(stored));
        }
        const bool fits = std::is_integral_v<decltype(stored)> || isInteger(static_cast<double>(stored));
        // A lossy conversion stores an approximate value.
        *static_cast<std::int64_t*>(value) = fits ? static_cast<std::int64_t>(stored) : 12345;
        return fits;
    };
    return std::visit(store, as<__CFNumber>(number, FakeType::number, "a number").value) ? 1 : 0;
}

const CFArrayCallBacks kCFTypeArrayCallBacks{0, retainMember, releaseMember, nullptr, equalMembers};
CFTypeID CFArrayGetTypeID() { return static_cast<CFTypeID>(FakeType::array); }

CFArrayRef CFArrayCreate(CFAllocatorRef /*allocator*/, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks) {
    if (FakeFaults::strikes()) {
        return nullptr;
    }
    return new __CFArray(std::vector<const void*>(values, values + count), callBacks);
}

CFIndex CFArrayGetCount(CFArrayRef array) { return static_cast<CFIndex>(arrayAt(array).members.size()); }

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
    const __CFArray& object = arrayAt(array);
    if (index < 0 || static_cast<std::size_t>(index) >= object.members.size()) {
        fakeCrash("a member was asked for beyond the end of an array");
    }
    return object.members[static_cast<std::size_t>(index)];
}

const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{0,       retainMember, releaseMember,
                                                             nullptr, equalMembers, nullptr};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{0, retainMember, releaseMember, nullptr, equalMembers};

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef /*allocator*/, const void** keys, const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks) {
    if (FakeFaults::strikes()) {
        return nullptr;
    }
    std::vector<std::pair<const void*, const void*>> entries;
    for (CFIndex index = 0; index < count; ++index) {
        entries.emplace_back(keys[index], values[index]);
    }
    return new __CFDictionary(std::move(entries), keyCallBacks, valueCallBacks);
}

namespace lomaris::test {

Held makeNumber(NumberStorage number) { return held(new __CFNumber(number)); }

Held makeArray(std::initializer_list<Held> members) {
    std::vector<const void*> values;
    for (const Held& member : members) {
        values.push_back(member.get());
    }
    return held(new __CFArray(std::move(values), &kCFTypeArrayCallBacks));
}

bool retainsItsMembers(CFTypeRef collection) {
    if (objectAt(collection).type == FakeType::array) {
        return as<__CFArray>(collection, FakeType::array, "an array").callBacks == &kCFTypeArrayCallBacks;
    }
    const auto& dictionary = as<__CFDictionary>(collection, FakeType::dictionary, "a dictionary");
    return dictionary.keyCallBacks == &kCFTypeDictionaryKeyCallBacks &&
           dictionary.valueCallBacks == &kCFTypeDictionaryValueCallBacks;
}

CFTypeRef valueOfKey(CFDictionaryRef dictionary, TextView key) {
    for (const auto& [name, value] : as<__CFDictionary>(dictionary, FakeType::dictionary, "a dictionary").entries) {
        if (unitsOf(name) == key) {
            return value;
        }
    }
    return nullptr;
}

}  // namespace lomaris::test
