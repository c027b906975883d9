#include "tests/macos/fake_accessibility.h"

#include "tests/macos/fake_shielded_call.h"

#include <cstddef>
#include <stdexcept>
#include <utility>
#include <variant>

using lomaris::test::boxError;
using lomaris::test::FakeAccessibility;
using lomaris::test::FakeAnswer;
using lomaris::test::FakeBatch;
using lomaris::test::fakeCrash;
using lomaris::test::FakeElementKey;
using lomaris::test::FakeFaults;
using lomaris::test::FakeObject;
using lomaris::test::FakeType;
using lomaris::test::Held;
using lomaris::test::objectAt;
using lomaris::test::unitsOf;

struct __AXUIElement final : FakeObject {
    explicit __AXUIElement(FakeElementKey shown) : FakeObject(FakeType::element), key(shown) {}

    [[nodiscard]] bool equals(const FakeObject& other) const override {
        return key == static_cast<const __AXUIElement&>(other).key;
    }

    FakeElementKey key;
};

/// The content of a box that is neither a range nor an error: a point, or a range that cannot be unboxed.
struct Point {
    bool isCareless = false;
};
struct BrokenRange {};
using Boxed = std::variant<CFRange, AXError, Point, BrokenRange>;

struct __AXValue final : FakeObject {
    explicit __AXValue(Boxed value) : FakeObject(FakeType::boxedValue), boxed(value) {}

    Boxed boxed;
};

namespace {

FakeAccessibility* currentAccessibility = nullptr;

const __AXUIElement& elementAt(AXUIElementRef element) {
    const FakeObject& object = objectAt(element);
    if (object.type != FakeType::element) {
        fakeCrash("something else was used as an element");
    }
    return static_cast<const __AXUIElement&>(object);
}

const __AXValue& boxAt(AXValueRef box) {
    const FakeObject& object = objectAt(box);
    if (object.type != FakeType::boxedValue) {
        fakeCrash("something else was used as a boxed value");
    }
    return static_cast<const __AXValue&>(object);
}

std::string nameOf(CFTypeRef name) {
    const lomaris::Text units = unitsOf(name);
    std::string characters;
    for (const char16_t unit : units) {
        characters.push_back(static_cast<char>(unit));
    }
    return characters;
}

/// Called first by every function of the interface.
void enter() {
    lomaris::test::fake_shield::leaveTemporary();
    if (currentAccessibility != nullptr && currentAccessibility->throws) {
        throw std::runtime_error("an exception of the platform");
    }
}

FakeAccessibility::State* cross(AXUIElementRef element, const std::string& call) {
    enter();
    const FakeElementKey key = elementAt(element).key;
    if (currentAccessibility == nullptr) {
        return nullptr;
    }
    currentAccessibility->crossings.push_back(call + " of " + std::to_string(key.process) + "." +
                                              std::to_string(key.element));
    return currentAccessibility->find(key);
}

FakeAnswer answerOf(const FakeAccessibility::State& state, const std::string& attribute) {
    const auto found = state.attributes.find(attribute);
    return found == state.attributes.end() ? FakeAnswer{kAXErrorAttributeUnsupported, nullptr} : found->second;
}

CFTypeRef handedOver(const Held& value) { return value ? CFRetain(value.get()) : nullptr; }

/// The entry of a batch for one attribute.
Held placeOf(const FakeAnswer& answer, FakeBatch batch) {
    if (answer.error == kAXErrorSuccess && answer.value) {
        return answer.value;
    }
    if (batch == FakeBatch::nullForErrors || (batch == FakeBatch::truthful && answer.error == kAXErrorSuccess)) {
        return lomaris::test::heldConstant(kCFNull);
    }
    return boxError(batch == FakeBatch::boxedSuccessForErrors ? kAXErrorSuccess : answer.error);
}

}  // namespace

Boolean AXIsProcessTrusted() {
    enter();
    return currentAccessibility->isTrusted ? 1 : 0;
}

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
    if (options != nullptr && !lomaris::test::retainsItsMembers(options)) {
        fakeCrash("the options dictionary does not retain its members");
    }
    if (options != nullptr &&
        lomaris::test::valueOfKey(options, u"AXTrustedCheckOptionPrompt") == static_cast<CFTypeRef>(kCFBooleanTrue) &&
        !currentAccessibility->isTrusted) {
        ++currentAccessibility->promptCount;
    }
    return AXIsProcessTrusted();
}

CFTypeID AXUIElementGetTypeID() { return static_cast<CFTypeID>(FakeType::element); }

AXUIElementRef AXUIElementCreateApplication(pid_t pid) {
    enter();
    return FakeFaults::strikes() ? nullptr : new __AXUIElement({pid, 0});
}

AXUIElementRef AXUIElementCreateSystemWide() {
    enter();
    return FakeFaults::strikes() ? nullptr : new __AXUIElement({0, 0});
}

AXError AXUIElementGetPid(AXUIElementRef element, pid_t* pid) {
    enter();
    const FakeElementKey key = elementAt(element).key;
    const FakeAccessibility::State* const state =
        currentAccessibility == nullptr ? nullptr : currentAccessibility->find(key);
    if (state != nullptr && state->processError != kAXErrorSuccess) {
        return state->processError;
    }
    *pid = key.process;
    return kAXErrorSuccess;
}

AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef* value) {
    const std::string name = nameOf(attribute);
    const FakeAccessibility::State* const state = cross(element, "copy " + name);
    if (state == nullptr) {
        return kAXErrorInvalidUIElement;
    }
    const FakeAnswer answer = answerOf(*state, name);
    if (answer.value || answer.error == kAXErrorSuccess) {
        *value = handedOver(answer.value);
    }
    return answer.error;
}

AXError AXUIElementCopyMultipleAttributeValues(AXUIElementRef element, CFArrayRef attributes,
                                               AXCopyMultipleAttributeOptions options, CFArrayRef* values) {
    if ((options & kAXCopyMultipleAttributeOptionStopOnError) != 0) {
        fakeCrash("a batch was to stop at the first error");
    }
    if (!lomaris::test::retainsItsMembers(attributes)) {
        fakeCrash("the array of names does not retain its members");
    }
    std::vector<std::string> names;
    std::string call = "copy";
    for (CFIndex index = 0; index < CFArrayGetCount(attributes); ++index) {
        names.push_back(nameOf(CFArrayGetValueAtIndex(attributes, index)));
        call += " " + names.back();
    }
    const FakeAccessibility::State* const state = cross(element, call);
    if (state == nullptr) {
        return kAXErrorInvalidUIElement;
    }
    const FakeBatch batch = currentAccessibility->batch;
    if (batch == FakeBatch::failing || batch == FakeBatch::succeedingWithoutArray) {
        return batch == FakeBatch::failing ? kAXErrorFailure : kAXErrorSuccess;
    }
    std::vector<Held> places;
    for (const std::string& name : names) {
        places.push_back(batch == FakeBatch::failingWithArray ? lomaris::test::makeString(u"meaningless")
                                                              : placeOf(answerOf(*state, name), batch));
    }
    if (batch == FakeBatch::tooLong) {
        places.push_back(places.front());
    } else if (batch == FakeBatch::tooShort) {
        places.pop_back();
    }
    std::vector<const void*> members;
    for (const Held& place : places) {
        members.push_back(place.get());
    }
    *values = CFArrayCreate(kCFAllocatorDefault, members.data(), static_cast<CFIndex>(members.size()),
                            &kCFTypeArrayCallBacks);
    return *values == nullptr || batch == FakeBatch::failingWithArray ? kAXErrorFailure : kAXErrorSuccess;
}

AXError AXUIElementIsAttributeSettable(AXUIElementRef element, CFStringRef attribute, Boolean* settable) {
    const std::string name = nameOf(attribute);
    const FakeAccessibility::State* const state = cross(element, "settable " + name);
    if (state == nullptr) {
        return kAXErrorInvalidUIElement;
    }
    if (state->settableError != kAXErrorSuccess) {
        // The platform leaves this value unspecified if it returns an error.
        *settable = 1;
        return state->settableError;
    }
    *settable = state->settable.count(name) != 0 ? 1 : 0;
    return *settable != 0 || state->attributes.count(name) != 0 ? kAXErrorSuccess : kAXErrorAttributeUnsupported;
}

AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef value) {
    static_cast<void>(objectAt(value));
    const std::string name = nameOf(attribute);
    const FakeAccessibility::State* const state = cross(element, "set " + name);
    if (state == nullptr) {
        return kAXErrorInvalidUIElement;
    }
    if (state->settable.count(name) == 0) {
        return kAXErrorAttributeUnsupported;
    }
    return state->onSet ? state->onSet(name, value) : kAXErrorSuccess;
}

AXError AXUIElementPerformAction(AXUIElementRef element, CFStringRef action) {
    const std::string name = nameOf(action);
    const FakeAccessibility::State* const state = cross(element, "perform " + name);
    if (state == nullptr) {
        return kAXErrorInvalidUIElement;
    }
    const auto found = state->actions.find(name);
    return found == state->actions.end() ? kAXErrorActionUnsupported : found->second;
}

CFTypeID AXValueGetTypeID() { return static_cast<CFTypeID>(FakeType::boxedValue); }

AXValueRef AXValueCreate(AXValueType type, const void* value) {
    if (FakeFaults::strikes()) {
        return nullptr;
    }
    if (type == kAXValueTypeCFRange) {
        return new __AXValue(*static_cast<const CFRange*>(value));
    }
    return new __AXValue(*static_cast<const AXError*>(value));
}

AXValueType AXValueGetType(AXValueRef value) {
    const Boxed& boxed = boxAt(value).boxed;
    if (std::holds_alternative<AXError>(boxed)) {
        return kAXValueTypeAXError;
    }
    return std::holds_alternative<Point>(boxed) ? static_cast<AXValueType>(1) : kAXValueTypeCFRange;
}

Boolean AXValueGetValue(AXValueRef value, AXValueType type, void* unboxed) {
    const Boxed& boxed = boxAt(value).boxed;
    if (const auto* const range = std::get_if<CFRange>(&boxed); range != nullptr && type == kAXValueTypeCFRange) {
        *static_cast<CFRange*>(unboxed) = *range;
        return 1;
    }
    if (const auto* const error = std::get_if<AXError>(&boxed); error != nullptr && type == kAXValueTypeAXError) {
        *static_cast<AXError*>(unboxed) = *error;
        return 1;
    }
    if (const auto* const point = std::get_if<Point>(&boxed); point != nullptr && point->isCareless) {
        return 1;
    }
    return 0;
}

namespace lomaris::test {

FakeAccessibility::FakeAccessibility() {
    if (currentAccessibility != nullptr) {
        fakeCrash("there is another accessibility double");
    }
    currentAccessibility = this;
}

FakeAccessibility::~FakeAccessibility() { currentAccessibility = nullptr; }

FakeAccessibility* FakeAccessibility::current() { return currentAccessibility; }

void FakeAccessibility::end(pid_t process) {
    std::erase_if(states_, [process](const auto& entry) { return entry.first.process == process; });
}

FakeAccessibility::State* FakeAccessibility::find(FakeElementKey key) {
    const auto found = states_.find(key);
    return found == states_.end() ? nullptr : &found->second;
}

Held makeElementObject(FakeElementKey key) { return held(new __AXUIElement(key)); }
Held boxRange(CFIndex location, CFIndex length) { return held(new __AXValue(CFRangeMake(location, length))); }
Held boxPoint() { return held(new __AXValue(Point{})); }
Held boxCarelessPoint() { return held(new __AXValue(Point{true})); }
Held boxError(::AXError error) { return held(new __AXValue(error)); }
Held boxBrokenRange() { return held(new __AXValue(BrokenRange{})); }

}  // namespace lomaris::test
