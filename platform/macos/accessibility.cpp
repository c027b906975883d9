#include "platform/macos/accessibility.h"

#include "platform/macos/accessibility_batch.h"
#include "platform/macos/accessibility_element.h"
#include "platform/macos/attribute_values.h"
#include "platform/macos/shielded_call.h"

#include <ApplicationServices/ApplicationServices.h>

#include <array>
#include <cstddef>
#include <optional>
#include <utility>

namespace lomaris::macos {

// The boundary's result codes are the platform's own.
static_assert(codeOf(AXError::success) == kAXErrorSuccess);
static_assert(codeOf(AXError::failure) == kAXErrorFailure);
static_assert(codeOf(AXError::illegalArgument) == kAXErrorIllegalArgument);
static_assert(codeOf(AXError::invalidUIElement) == kAXErrorInvalidUIElement);
static_assert(codeOf(AXError::cannotComplete) == kAXErrorCannotComplete);
static_assert(codeOf(AXError::attributeUnsupported) == kAXErrorAttributeUnsupported);
static_assert(codeOf(AXError::actionUnsupported) == kAXErrorActionUnsupported);
static_assert(codeOf(AXError::notImplemented) == kAXErrorNotImplemented);
static_assert(codeOf(AXError::apiDisabled) == kAXErrorAPIDisabled);
static_assert(codeOf(AXError::noValue) == kAXErrorNoValue);

namespace {

/// Attribute and action names are ASCII, so each character is one UTF-16 unit.
CFOwned<CFStringRef> nameFrom(std::string_view name) { return stringFrom(Text(name.begin(), name.end())); }

AXError ownCode(::AXError error) { return static_cast<AXError>(error); }

AttributeAnswer answerFrom(const CopiedAttribute& copied) {
    return {copied.error, attributeValueFrom(copied.value.get())};
}

SettableAnswer askSettable(const Element& element, CFStringRef attribute) {
    AXUIElementRef const target = axElementOf(element);
    if (target == nullptr) {
        return {AXError::illegalArgument, false};
    }
    if (attribute == nullptr) {
        return {AXError::failure, false};
    }
    Boolean settable = 0;
    const AXError error = ownCode(AXUIElementIsAttributeSettable(target, attribute, &settable));
    return {error, error == AXError::success && settable != 0};
}

std::vector<AttributeAnswer> copyRow(const AttributeBatch& batch, std::size_t count, const Element& element) {
    AXUIElementRef const target = axElementOf(element);
    if (target == nullptr) {
        return std::vector<AttributeAnswer>(count, {AXError::illegalArgument, NullValue{}});
    }
    std::vector<AttributeAnswer> row;
    row.reserve(count);
    for (const CopiedAttribute& copied : batch.copyFrom(target)) {
        row.push_back(answerFrom(copied));
    }
    return row;
}

/// The results if an exception ended the operation.
const AttributeAnswer failedCopy{AXError::failure, NullValue{}};
constexpr SettableAnswer failedQuestion{AXError::failure, false};

}  // namespace

bool MacOSAccessibility::isProcessTrusted(TrustPrompt prompt) {
    return answerOf<bool>([prompt] {
        if (prompt == TrustPrompt::none) {
            return AXIsProcessTrusted() != 0;
        }
        std::array<const void*, 1> keys{CFSTR("AXTrustedCheckOptionPrompt")};
        std::array<const void*, 1> values{kCFBooleanTrue};
        const CFOwned<CFDictionaryRef> options(CFDictionaryCreate(kCFAllocatorDefault, keys.data(), values.data(), 1,
                                                                  &kCFTypeDictionaryKeyCallBacks,
                                                                  &kCFTypeDictionaryValueCallBacks));
        // If the options could not be created, the call still returns the state, but without the prompt.
        return AXIsProcessTrustedWithOptions(options.get()) != 0;
    });
}

Element MacOSAccessibility::applicationElement(ProcessIdentifier processIdentifier) {
    return answerOf(
        [processIdentifier] {
            return makeElement(CFOwned<CFTypeRef>(AXUIElementCreateApplication(processIdentifier)));
        },
        makeElement({}));
}

Element MacOSAccessibility::systemWideElement() {
    return answerOf([] { return makeElement(CFOwned<CFTypeRef>(AXUIElementCreateSystemWide())); }, makeElement({}));
}

AttributeAnswer MacOSAccessibility::copyAttribute(const Element& element, std::string_view attribute) {
    return answerOf(
        [&]() -> AttributeAnswer {
            AXUIElementRef const target = axElementOf(element);
            if (target == nullptr) {
                return {AXError::illegalArgument, NullValue{}};
            }
            return answerFrom(copyAttributeOf(target, nameFrom(attribute).get()));
        },
        failedCopy);
}

ElementAnswer MacOSAccessibility::copyElementAttribute(const Element& element, std::string_view attribute) {
    return answerOf(
        [&]() -> ElementAnswer {
            AXUIElementRef const target = axElementOf(element);
            if (target == nullptr) {
                return {AXError::illegalArgument, std::nullopt};
            }
            CopiedAttribute copied = copyAttributeOf(target, nameFrom(attribute).get());
            if (!copied.value || CFGetTypeID(copied.value.get()) == CFNullGetTypeID()) {
                return {copied.error, std::nullopt};
            }
            return {copied.error, makeElement(std::move(copied.value))};
        },
        ElementAnswer{AXError::failure, std::nullopt});
}

std::vector<std::vector<AttributeAnswer>> MacOSAccessibility::copyAttributes(
    std::span<const Element> elements, std::span<const std::string_view> attributes) {
    const std::size_t count = attributes.size();
    if (count == 0) {
        return std::vector<std::vector<AttributeAnswer>>(elements.size());
    }
    std::optional<AttributeBatch> batch;
    runShielded([&] {
        std::vector<CFOwned<CFStringRef>> names;
        names.reserve(count);
        for (const std::string_view attribute : attributes) {
            names.push_back(nameFrom(attribute));
        }
        batch.emplace(std::move(names));
    });
    const std::vector<AttributeAnswer> failedRow(count, failedCopy);
    std::vector<std::vector<AttributeAnswer>> answers;
    answers.reserve(elements.size());
    for (const Element& element : elements) {
        // A pool for each element, so that autoreleased objects do not accumulate during a long walk.
        answers.push_back(batch ? answerOf([&] { return copyRow(*batch, count, element); }, failedRow) : failedRow);
    }
    return answers;
}

AXError MacOSAccessibility::setAttribute(const Element& element, std::string_view attribute,
                                         const AttributeValue& value) {
    return answerOf(
        [&] {
            AXUIElementRef const target = axElementOf(element);
            if (target == nullptr) {
                return AXError::illegalArgument;
            }
            const SettableObject settable = settableObjectFrom(value);
            if (settable.error != AXError::success) {
                return settable.error;
            }
            const CFOwned<CFStringRef> name = nameFrom(attribute);
            return name ? ownCode(AXUIElementSetAttributeValue(target, name.get(), settable.object.get()))
                        : AXError::failure;
        },
        AXError::failure);
}

SettableAnswer MacOSAccessibility::isAttributeSettable(const Element& element, std::string_view attribute) {
    return answerOf([&] { return askSettable(element, nameFrom(attribute).get()); }, failedQuestion);
}

std::vector<SettableAnswer> MacOSAccessibility::areAttributesSettable(std::span<const Element> elements,
                                                                      std::string_view attribute) {
    const auto name = answerOf<CFOwned<CFStringRef>>([attribute] { return nameFrom(attribute); });
    std::vector<SettableAnswer> answers;
    answers.reserve(elements.size());
    for (const Element& element : elements) {
        answers.push_back(answerOf([&] { return askSettable(element, name.get()); }, failedQuestion));
    }
    return answers;
}

AXError MacOSAccessibility::performAction(const Element& element, std::string_view action) {
    return answerOf(
        [&] {
            AXUIElementRef const target = axElementOf(element);
            if (target == nullptr) {
                return AXError::illegalArgument;
            }
            const CFOwned<CFStringRef> name = nameFrom(action);
            return name ? ownCode(AXUIElementPerformAction(target, name.get())) : AXError::failure;
        },
        AXError::failure);
}

std::optional<ProcessIdentifier> MacOSAccessibility::processIdentifier(const Element& element) {
    return answerOf<std::optional<ProcessIdentifier>>([&element]() -> std::optional<ProcessIdentifier> {
        AXUIElementRef const target = axElementOf(element);
        pid_t process = 0;
        if (target == nullptr || AXUIElementGetPid(target, &process) != kAXErrorSuccess) {
            return std::nullopt;
        }
        return process;
    });
}

bool MacOSAccessibility::containsIgnoringCase(TextView text, TextView word) {
    return answerOf<bool>([&] {
        const CFOwned<CFStringRef> searched = stringFrom(text);
        const CFOwned<CFStringRef> sought = stringFrom(word);
        if (!searched || !sought) {
            return false;
        }
        const CFOwned<CFLocaleRef> locale(CFLocaleCopyCurrent());
        return CFStringFindWithOptionsAndLocale(searched.get(), sought.get(),
                                                CFRangeMake(0, CFStringGetLength(searched.get())),
                                                kCFCompareCaseInsensitive, locale.get(), nullptr) != 0;
    });
}

}  // namespace lomaris::macos
