#include "platform/macos/attribute_values.h"

#include "platform/macos/accessibility_element.h"

#include <ApplicationServices/ApplicationServices.h>

#include <cstddef>
#include <cstdint>
#include <utility>
#include <variant>
#include <vector>

namespace lomaris::macos {

namespace {

bool isElement(CFTypeRef value) { return value != nullptr && CFGetTypeID(value) == AXUIElementGetTypeID(); }

AttributeValue numberFrom(CFNumberRef number) {
    std::int64_t integer = 0;
    if (CFNumberGetValue(number, kCFNumberSInt64Type, &integer) != 0) {
        return integer;
    }
    OtherNumber other;
    // A number that a double cannot represent exactly is rounded, which suffices for `OtherNumber`.
    static_cast<void>(CFNumberGetValue(number, kCFNumberDoubleType, &other.value));
    return other;
}

AttributeValue arrayFrom(CFArrayRef array) {
    const CFIndex count = CFArrayGetCount(array);
    std::vector<Element> elements;
    elements.reserve(static_cast<std::size_t>(count));
    for (CFIndex index = 0; index < count; ++index) {
        CFTypeRef const member = CFArrayGetValueAtIndex(array, index);
        if (!isElement(member)) {
            return MixedArray{};
        }
        elements.push_back(makeElement(CFOwned<CFTypeRef>::retaining(member)));
    }
    return elements;
}

AttributeValue boxedValueFrom(AXValueRef boxed) {
    CFRange range{};
    if (AXValueGetType(boxed) != kAXValueTypeCFRange || AXValueGetValue(boxed, kAXValueTypeCFRange, &range) == 0) {
        return OtherBoxedValue{};
    }
    return TextRange{range.location, range.length};
}

/// Creates the objects for the kinds that can be set; refuses every other kind.
struct SettableObjectMaker {
    SettableObject operator()(const Text& text) const {
        return made(CFOwned<CFTypeRef>::retaining(stringFrom(text).get()));
    }

    SettableObject operator()(bool value) const {
        return made(CFOwned<CFTypeRef>::retaining(value ? kCFBooleanTrue : kCFBooleanFalse));
    }

    SettableObject operator()(std::int64_t integer) const {
        return made(CFOwned<CFTypeRef>(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, &integer)));
    }

    SettableObject operator()(OtherNumber number) const {
        return made(CFOwned<CFTypeRef>(CFNumberCreate(kCFAllocatorDefault, kCFNumberDoubleType, &number.value)));
    }

    SettableObject operator()(TextRange range) const {
        const auto boxed = CFRangeMake(static_cast<CFIndex>(range.location), static_cast<CFIndex>(range.length));
        return made(CFOwned<CFTypeRef>(AXValueCreate(kAXValueTypeCFRange, &boxed)));
    }

    SettableObject operator()(const Element& element) const {
        AXUIElementRef const held = axElementOf(element);
        return held == nullptr ? refused() : made(CFOwned<CFTypeRef>::retaining(held));
    }

    SettableObject operator()(NullValue /*value*/) const { return refused(); }
    SettableObject operator()(const std::vector<Element>& /*value*/) const { return refused(); }
    SettableObject operator()(MixedArray /*value*/) const { return refused(); }
    SettableObject operator()(OtherBoxedValue /*value*/) const { return refused(); }
    SettableObject operator()(OtherValue /*value*/) const { return refused(); }

private:
    static SettableObject made(CFOwned<CFTypeRef> object) {
        const AXError error = object ? AXError::success : AXError::failure;
        return {error, std::move(object)};
    }

    static SettableObject refused() { return {AXError::illegalArgument, {}}; }
};

}  // namespace

AttributeValue attributeValueFrom(CFTypeRef value) {
    if (value == nullptr) {
        return NullValue{};
    }
    const CFTypeID type = CFGetTypeID(value);
    if (type == CFStringGetTypeID()) {
        return textFrom(static_cast<CFStringRef>(value));
    }
    if (type == CFBooleanGetTypeID()) {
        return CFBooleanGetValue(static_cast<CFBooleanRef>(value)) != 0;
    }
    if (type == CFNumberGetTypeID()) {
        return numberFrom(static_cast<CFNumberRef>(value));
    }
    if (type == AXUIElementGetTypeID()) {
        return makeElement(CFOwned<CFTypeRef>::retaining(value));
    }
    if (type == CFArrayGetTypeID()) {
        return arrayFrom(static_cast<CFArrayRef>(value));
    }
    if (type == AXValueGetTypeID()) {
        return boxedValueFrom(static_cast<AXValueRef>(value));
    }
    if (type == CFNullGetTypeID()) {
        return NullValue{};
    }
    return OtherValue{};
}

SettableObject settableObjectFrom(const AttributeValue& value) { return std::visit(SettableObjectMaker{}, value); }

std::optional<AXError> boxedErrorIn(CFTypeRef value) {
    if (value == nullptr || CFGetTypeID(value) != AXValueGetTypeID()) {
        return std::nullopt;
    }
    const auto* const boxed = static_cast<AXValueRef>(value);
    ::AXError error = kAXErrorSuccess;
    if (AXValueGetType(boxed) != kAXValueTypeAXError || AXValueGetValue(boxed, kAXValueTypeAXError, &error) == 0) {
        return std::nullopt;
    }
    return static_cast<AXError>(error);
}

}  // namespace lomaris::macos
