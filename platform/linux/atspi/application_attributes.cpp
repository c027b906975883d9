#include "platform/linux/atspi/application_attributes.h"

#include "platform/attributes.h"
#include "platform/linux/atspi/atspi_element.h"
#include "platform/linux/atspi/focus_search.h"
#include "platform/linux/atspi/menu_attributes.h"

#include <algorithm>
#include <array>
#include <vector>

namespace lomaris {

namespace {

AttributeAnswer focusedElementAnswer(BusConnection& bus, const ObjectReference& root) {
    const FoundObject found = findFocusedObject(bus, root);
    if (!found.object) {
        return {found.error, NullValue{}};
    }
    return {AXError::success, makeElement(*found.object)};
}

AttributeAnswer windowsAnswer(const ApplicationWindows& windows) {
    std::vector<Element> elements;
    for (const ApplicationWindow& window : windows.windows) {
        elements.push_back(makeElement(window.object));
    }
    return {AXError::success, std::move(elements)};
}

/// The first window for which `matches` returns true, or `noValue`.
template <typename Predicate>
AttributeAnswer windowAnswer(const ApplicationWindows& windows, Predicate matches) {
    const auto found = std::find_if(windows.windows.begin(), windows.windows.end(), matches);
    if (found == windows.windows.end()) {
        return {AXError::noValue, NullValue{}};
    }
    return {AXError::success, makeElement(found->object)};
}

bool isActive(const ApplicationWindow& window) { return window.isActive; }
bool isShowing(const ApplicationWindow& window) { return window.isShowing; }

/// The menu bar of the active window, or of the first showing one. AT-SPI has no menu bar of an application.
AttributeAnswer menuBarAnswer(BusConnection& bus, const ApplicationWindows& windows) {
    const auto begin = windows.windows.begin();
    const auto end = windows.windows.end();
    auto window = std::find_if(begin, end, isActive);
    if (window == end) {
        window = std::find_if(begin, end, isShowing);
    }
    return window == end ? AttributeAnswer{AXError::noValue, NullValue{}} : findMenuBar(bus, window->object);
}

constexpr std::array<std::string_view, 5> applicationAttributes{
    attribute::focusedUIElement, attribute::focusedWindow, attribute::mainWindow,
    attribute::menuBar,          attribute::windows,
};

}  // namespace

bool isApplicationAttribute(std::string_view attribute) {
    return std::find(applicationAttributes.begin(), applicationAttributes.end(), attribute) !=
           applicationAttributes.end();
}

AttributeAnswer copyApplicationAttribute(BusConnection& bus, const ObjectReference& root, std::string_view attribute) {
    if (attribute == attribute::focusedUIElement) {
        return focusedElementAnswer(bus, root);
    }
    const ApplicationWindows windows = applicationWindows(bus, root);
    if (windows.error != AXError::success) {
        return {windows.error, NullValue{}};
    }
    if (attribute == attribute::windows) {
        return windowsAnswer(windows);
    }
    if (attribute == attribute::menuBar) {
        return menuBarAnswer(bus, windows);
    }
    AttributeAnswer answer = windowAnswer(windows, isActive);
    if (attribute == attribute::mainWindow && answer.error == AXError::noValue) {
        // An application in the background has no active window, but has a main window.
        answer = windowAnswer(windows, isShowing);
    }
    return answer;
}

}  // namespace lomaris
