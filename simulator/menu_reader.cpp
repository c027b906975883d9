#include "simulator/menu_reader.h"

#include "simulator/element_script.h"
#include "simulator/value_reader.h"

#include <optional>
#include <utility>

namespace lomaris::simulator {
namespace {

MenuItem readItem(const JsonNode& node, const Stage& stage) {
    node.allowKeys(scriptKeysAnd({"title", "character", "modifiers", "enabled", "name"}));
    MenuItem item;
    item.title = node.get("title").text();
    if (const auto character = node.find("character")) {
        item.commandCharacter = character->textOrNull();
    }
    if (const auto modifiers = node.find("modifiers")) {
        item.modifiers = modifiers->isNull() ? std::nullopt : std::optional(readValue(*modifiers, stage));
    }
    if (const auto enabled = node.find("enabled")) {
        if (!enabled->isNull() && !enabled->value().is_boolean()) {
            enabled->refuse("true, false or null");
        }
        item.enabled = enabled->isNull() ? std::nullopt : std::optional(enabled->boolean());
    }
    return item;
}

}  // namespace

std::vector<Menu> readMenus(const JsonNode& node, const Stage& stage) {
    std::vector<Menu> menus;
    for (const JsonNode& member : node.members()) {
        member.allowKeys(scriptKeysAnd({"title", "items", "name"}));
        Menu menu{member.get("title").text(), {}};
        for (const JsonNode& item : member.get("items").members()) {
            menu.items.push_back(readItem(item, stage));
        }
        menus.push_back(std::move(menu));
    }
    return menus;
}

}  // namespace lomaris::simulator
