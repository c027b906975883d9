#include "platform/linux/atspi/menu_attributes.h"

#include "platform/attributes.h"
#include "platform/linux/atspi/atspi.h"
#include "platform/linux/atspi/attribute_failure.h"
#include "platform/linux/atspi/menu_shortcut.h"
#include "platform/linux/atspi/object_attributes.h"
#include "platform/linux/atspi/roles.h"
#include "text/utf8.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace lomaris {

namespace {

using atspi::State;
using atspi::States;

// A menu bar is a child of the window or inside one or two nested boxes.
constexpr int deepestLevel = 4;
constexpr std::size_t maximumExamined = 300;

/// Searches a window level by level, with the calls for one level sent together.
class MenuBarSearch {
public:
    explicit MenuBarSearch(BusConnection& bus) : bus_(bus) {}

    AttributeAnswer run(const ObjectReference& window) {
        std::vector<ObjectReference> level{window};
        for (int depth = 0; depth < deepestLevel && !level.empty(); ++depth) {
            std::vector<Candidate> candidates = childrenOf(level);
            examine(candidates);
            level.clear();
            for (Candidate& candidate : candidates) {
                if (!candidate.isShowing) {
                    continue;
                }
                if (candidate.role == atspi_role::menuBar) {
                    return {AXError::success, makeElement(MenuPart{MenuLevel::bar, std::move(candidate.object)})};
                }
                level.push_back(std::move(candidate.object));
            }
        }
        return {error_, NullValue{}};
    }

private:
    struct Candidate {
        ObjectReference object;
        std::optional<std::uint32_t> role;
        bool isShowing = false;
    };

    std::vector<Candidate> childrenOf(const std::vector<ObjectReference>& objects) {
        std::vector<std::vector<ObjectReference>> lists(objects.size());
        for (std::size_t i = 0; i < objects.size(); ++i) {
            queueFewChildren(objects[i], lists[i]);
        }
        bus_.finish();
        std::vector<Candidate> candidates;
        for (std::size_t i = 0; i < objects.size(); ++i) {
            for (ObjectReference& child : lists[i]) {
                auto object = atspi::resolved(std::move(child), objects[i].name);
                if (object && examined_ < maximumExamined) {
                    ++examined_;
                    candidates.push_back({std::move(*object), std::nullopt, false});
                }
            }
        }
        return candidates;
    }

    /// Skips objects with more children than the search examines in total: these are tables or pages.
    void queueFewChildren(const ObjectReference& object, std::vector<ObjectReference>& list) {
        bus_.getProperty(object, atspi::accessible, "ChildCount", [this, object, &list](const BusReply& countReply) {
            note(countReply);
            const std::int32_t count = countReply.readIntegerProperty().value_or(0);
            if (count <= 0 || static_cast<std::size_t>(count) > maximumExamined) {
                return;
            }
            bus_.call(object, atspi::accessible, "GetChildren", {}, [this, &list](const BusReply& reply) {
                note(reply);
                list = reply.readReferences().value_or(std::vector<ObjectReference>());
            });
        });
    }

    void examine(std::vector<Candidate>& candidates) {
        for (Candidate& candidate : candidates) {
            bus_.call(candidate.object, atspi::accessible, "GetRole", {}, [this, &candidate](const BusReply& reply) {
                note(reply);
                candidate.role = reply.readUnsigned();
            });
            bus_.call(candidate.object, atspi::accessible, "GetState", {}, [this, &candidate](const BusReply& reply) {
                note(reply);
                candidate.isShowing = States(reply.readBits().value_or(0)).has(State::showing);
            });
        }
        bus_.finish();
    }

    void note(const BusReply& reply) {
        if (reply.error() == AXError::cannotComplete) {
            error_ = AXError::cannotComplete;
        }
    }

    BusConnection& bus_;
    std::size_t examined_ = 0;
    AXError error_ = AXError::noValue;
};

std::string_view roleOf(MenuLevel level) {
    switch (level) {
        case MenuLevel::bar:
            return "AXMenuBar";
        case MenuLevel::barItem:
            return "AXMenuBarItem";
        case MenuLevel::menu:
            break;
    }
    return "AXMenu";
}

/// The name of the role is known, but the request detects an object that no longer exists.
void queueRole(BusConnection& bus, const MenuPart& part, AttributeAnswer& answer) {
    bus.call(part.object, atspi::accessible, "GetRole", {}, [&bus, part, &answer](const BusReply& reply) {
        if (reply.readUnsigned()) {
            answer = {AXError::success, textFromUtf8(roleOf(part.level))};
        } else {
            answerFailure(bus, part.object, reply, answer);
        }
    });
}

void queueChildren(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer,
                   std::function<void(std::vector<ObjectReference>)> take) {
    bus.call(object, atspi::accessible, "GetChildren", {},
             [&bus, object, &answer, take = std::move(take)](const BusReply& reply) {
                 auto references = reply.readReferences();
                 if (!references) {
                     answerFailure(bus, object, reply, answer);
                     return;
                 }
                 std::vector<ObjectReference> children;
                 for (ObjectReference& reference : *references) {
                     if (auto child = atspi::resolved(std::move(reference), object.name)) {
                         children.push_back(std::move(*child));
                     }
                 }
                 take(std::move(children));
             });
}

void queueBarItems(BusConnection& bus, const ObjectReference& bar, AttributeAnswer& answer) {
    queueChildren(bus, bar, answer, [&answer](std::vector<ObjectReference> children) {
        std::vector<Element> items;
        items.reserve(children.size());
        for (ObjectReference& child : children) {
            items.push_back(makeElement(MenuPart{MenuLevel::barItem, std::move(child)}));
        }
        answer = {AXError::success, std::move(items)};
    });
}

/// The menu of a title: the only child if that is a popup menu (Qt), otherwise the title's own object (GTK).
void queueMenuOfBarItem(BusConnection& bus, const ObjectReference& item, AttributeAnswer& answer) {
    queueChildren(bus, item, answer, [&bus, item, &answer](std::vector<ObjectReference> children) {
        if (children.empty()) {
            answer = {AXError::success, std::vector<Element>()};
            return;
        }
        answer = {AXError::success, std::vector{makeElement(MenuPart{MenuLevel::menu, item})}};
        if (children.size() > 1) {
            return;
        }
        ObjectReference& child = children.front();
        bus.call(child, atspi::accessible, "GetRole", {}, [child, &answer](const BusReply& reply) {
            if (reply.readUnsigned() == atspi_role::popupMenu) {
                answer = {AXError::success, std::vector{makeElement(child)}};
            }
        });
    });
}

void queueShortcut(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer,
                   AttributeValue (*valueOf)(const MenuShortcut&)) {
    bus.call(object, atspi::action, "GetKeyBinding", {std::int32_t{0}},
             [&bus, object, &answer, valueOf](const BusReply& reply) {
                 const auto binding = reply.readString();
                 if (!binding) {
                     answerFailure(bus, object, reply, answer);
                     return;
                 }
                 const auto shortcut = menuShortcutFromKeyBinding(*binding);
                 answer = shortcut ? AttributeAnswer{AXError::success, valueOf(*shortcut)}
                                   : AttributeAnswer{AXError::noValue, NullValue{}};
             });
}

}  // namespace

AttributeAnswer findMenuBar(BusConnection& bus, const ObjectReference& window) {
    return MenuBarSearch(bus).run(window);
}

void queueMenuAttribute(BusConnection& bus, const MenuPart& part, std::string_view attribute, AttributeAnswer& answer) {
    if (attribute == attribute::role) {
        queueRole(bus, part, answer);
    } else if (attribute == attribute::children && part.level == MenuLevel::bar) {
        queueBarItems(bus, part.object, answer);
    } else if (attribute == attribute::children && part.level == MenuLevel::barItem) {
        queueMenuOfBarItem(bus, part.object, answer);
    } else {
        queueAttribute(ObjectSource(bus), part.object, attribute, answer);
    }
}

void queueMenuItemCharacter(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer) {
    queueShortcut(bus, object, answer, [](const MenuShortcut& shortcut) { return AttributeValue(shortcut.character); });
}

void queueMenuItemModifiers(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer) {
    queueShortcut(bus, object, answer, [](const MenuShortcut& shortcut) { return AttributeValue(shortcut.modifiers); });
}

}  // namespace lomaris
