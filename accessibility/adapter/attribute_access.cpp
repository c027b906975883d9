#include "accessibility/adapter/attribute_access.h"

#include "platform/attributes.h"

#include <chrono>
#include <utility>
#include <variant>

namespace lomaris {

namespace {

constexpr Duration windowServerSettles = std::chrono::milliseconds(100);

template <typename Value>
std::optional<Value> copyOptional(Accessibility& accessibility, const Element& from, std::string_view attribute) {
    AttributeAnswer answer = accessibility.copyAttribute(from, attribute);
    if (valueIn<Value>(answer) == nullptr) {
        return std::nullopt;
    }
    return std::get<Value>(std::move(answer.value));
}

}  // namespace

std::optional<Element> copyOptionalElementAttribute(Accessibility& accessibility, const Element& from,
                                                    std::string_view attribute) {
    return copyOptional<Element>(accessibility, from, attribute);
}

std::vector<Element> copyOptionalElementArrayAttribute(Accessibility& accessibility, const Element& from,
                                                       std::string_view attribute) {
    return copyOptional<std::vector<Element>>(accessibility, from, attribute).value_or(std::vector<Element>());
}

std::optional<Text> copyOptionalStringAttribute(Accessibility& accessibility, const Element& from,
                                                std::string_view attribute) {
    return copyOptional<Text>(accessibility, from, attribute);
}

std::optional<bool> copyOptionalBoolAttribute(Accessibility& accessibility, const Element& from,
                                              std::string_view attribute) {
    return copyOptional<bool>(accessibility, from, attribute);
}

std::optional<TextRange> copySelectedRange(Accessibility& accessibility, const Element& from) {
    return copyOptional<TextRange>(accessibility, from, attribute::selectedTextRange);
}

bool isFocused(Accessibility& accessibility, const Element& element) {
    return copyOptionalBoolAttribute(accessibility, element, attribute::focused).value_or(false);
}

void raiseFocusedWindow(Platform& platform, ProcessIdentifier processIdentifier) {
    Accessibility& accessibility = platform.accessibility();
    const Element application = accessibility.applicationElement(processIdentifier);
    auto window = copyOptionalElementAttribute(accessibility, application, attribute::focusedWindow);
    if (!window) {
        window = copyOptionalElementAttribute(accessibility, application, attribute::mainWindow);
    }
    if (!window) {
        return;
    }
    static_cast<void>(accessibility.performAction(*window, action::raise));
    static_cast<void>(accessibility.setAttribute(*window, attribute::main, true));
    static_cast<void>(accessibility.setAttribute(*window, attribute::focused, true));
    platform.scheduling().sleep(windowServerSettles);
}

}  // namespace lomaris
