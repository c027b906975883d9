#include "accessibility/adapter/copy_command.h"

#include "accessibility/adapter/attribute_access.h"
#include "platform/attributes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <vector>

namespace lomaris {

namespace {

constexpr std::array<std::string_view, 1> titleAttribute = {attribute::title};

constexpr std::array<std::string_view, 3> menuItemAttributes = {
    attribute::menuItemCommandCharacter,
    attribute::menuItemCommandModifiers,
    attribute::enabled,
};

/// Returns the menus of the menu bar, those titled "Edit" first.
std::vector<Element> menuBarItemsInOrder(Accessibility& accessibility, const Element& application) {
    const auto menuBar = copyOptionalElementAttribute(accessibility, application, attribute::menuBar);
    if (!menuBar) {
        return {};
    }
    const auto items = copyOptionalElementArrayAttribute(accessibility, *menuBar, attribute::children);
    const auto titles = accessibility.copyAttributes(items, titleAttribute);
    std::vector<Element> ordered;
    std::vector<Element> others;
    for (std::size_t index = 0; index < items.size(); ++index) {
        const Text* const title = valueIn<Text>(titles[index].front());
        (title != nullptr && *title == u"Edit" ? ordered : others).push_back(items[index]);
    }
    ordered.insert(ordered.end(), others.begin(), others.end());
    return ordered;
}

/// True if the item is bound to Command+C alone. A missing or non-integer modifier value counts as no modifiers.
bool isBoundToPlainCommandC(const AttributeAnswer& character, const AttributeAnswer& modifiers) {
    const Text* const text = valueIn<Text>(character);
    const auto* const bits = valueIn<std::int64_t>(modifiers);
    return text != nullptr && (*text == u"c" || *text == u"C") && (bits == nullptr || *bits == 0);
}

std::optional<CopyCommand> findInMenu(Accessibility& accessibility, const Element& menu) {
    const auto items = copyOptionalElementArrayAttribute(accessibility, menu, attribute::children);
    const auto answers = accessibility.copyAttributes(items, menuItemAttributes);
    for (std::size_t index = 0; index < items.size(); ++index) {
        const auto& [character, modifiers, enabled] = std::tie(answers[index][0], answers[index][1], answers[index][2]);
        if (isBoundToPlainCommandC(character, modifiers)) {
            const bool* const isEnabled = valueIn<bool>(enabled);
            return CopyCommand{items[index], isEnabled == nullptr ? std::nullopt : std::optional(*isEnabled)};
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<CopyCommand> findCopyCommand(Accessibility& accessibility,
                                           const std::optional<RunningApplication>& application) {
    if (!application) {
        return std::nullopt;
    }
    const Element element = accessibility.applicationElement(application->processIdentifier);
    for (const auto& menuBarItem : menuBarItemsInOrder(accessibility, element)) {
        for (const auto& menu : copyOptionalElementArrayAttribute(accessibility, menuBarItem, attribute::children)) {
            if (auto command = findInMenu(accessibility, menu)) {
                return command;
            }
        }
    }
    return std::nullopt;
}

}  // namespace lomaris
