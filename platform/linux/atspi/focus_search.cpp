#include "platform/linux/atspi/focus_search.h"

#include "platform/linux/atspi/atspi.h"
#include "platform/linux/atspi/collection_match.h"

#include <cstddef>
#include <utility>

namespace lomaris {

namespace {

using atspi::State;
using atspi::States;

constexpr std::size_t maximumExamined = 3000;

/// Whether an object has the focus. Qt also reports the state FOCUSED for containers of the focused object, which lack
/// FOCUSABLE: `claimed`.
enum class Focus { none, claimed, certain };
Focus focusOf(States states) {
    if (!states.has(State::focused)) {
        return Focus::none;
    }
    return states.has(State::focusable) ? Focus::certain : Focus::claimed;
}

/// A breadth-first walk with many pending calls. Objects without the state SHOWING are examined last: most of them are
/// closed menus and hidden pages, but a focused field may have been scrolled out of view.
class FocusWalk {
public:
    explicit FocusWalk(BusConnection& bus) : bus_(bus) {}

    FoundObject run(std::vector<ObjectReference> objects) {
        while (!objects.empty() && !found_) {
            for (const ObjectReference& object : objects) {
                expand(object);
            }
            bus_.finish();
            objects = std::exchange(hidden_, {});
        }
        const auto& object = found_ ? found_ : claimed_;
        if (object) {
            return {AXError::success, object};
        }
        return {isHung_ ? AXError::cannotComplete : AXError::noValue, std::nullopt};
    }

private:
    void expand(const ObjectReference& object) {
        if (examined_ >= maximumExamined) {
            return;
        }
        bus_.call(object, atspi::accessible, "GetChildren", {}, [this, peer = object.name](const BusReply& reply) {
            note(reply);
            auto children = reply.readReferences();
            if (!children) {
                return;
            }
            for (ObjectReference& child : *children) {
                if (auto next = atspi::resolved(std::move(child), peer); next && examined_ < maximumExamined) {
                    ++examined_;
                    examine(*next);
                }
            }
        });
    }

    void examine(const ObjectReference& object) {
        bus_.call(object, atspi::accessible, "GetState", {}, [this, object](const BusReply& reply) {
            note(reply);
            if (const auto bits = reply.readBits()) {
                takeStates(object, States(*bits));
            }
        });
    }

    void takeStates(const ObjectReference& object, States states) {
        const Focus focus = focusOf(states);
        if (focus == Focus::certain) {
            found_ = object;
            // All pending calls belong to this walk.
            bus_.abandon();
            return;
        }
        if (focus == Focus::claimed && !claimed_) {
            claimed_ = object;
        }
        if (states.has(State::managesDescendants)) {
            return;
        }
        if (states.has(State::showing)) {
            expand(object);
        } else if (states.has(State::visible)) {
            hidden_.push_back(object);
        }
    }

    void note(const BusReply& reply) { isHung_ = isHung_ || reply.error() == AXError::cannotComplete; }

    BusConnection& bus_;
    std::size_t examined_ = 0;
    std::optional<ObjectReference> found_;
    std::optional<ObjectReference> claimed_;
    std::vector<ObjectReference> hidden_;
    bool isHung_ = false;
};

/// Lets the application search, which is much faster than a walk. `noValue` if no object has the focus; nullopt if the
/// application does not support it.
std::optional<FoundObject> askForFocusedObject(BusConnection& bus, const ObjectReference& window) {
    std::optional<FoundObject> result;
    const States wanted = States::of({State::focusable, State::focused});
    bus.call(atspi::newGetMatches(bus, window, wanted), window.name, [&](const BusReply& reply) {
        auto matches = reply.readReferences();
        if (!matches) {
            if (reply.error() == AXError::cannotComplete) {
                result = {reply.error(), std::nullopt};
            }
            return;
        }
        result = {AXError::noValue, std::nullopt};
        if (!matches->empty()) {
            if (auto object = atspi::resolved(std::move(matches->front()), window.name)) {
                result = {AXError::success, std::move(object)};
            }
        }
    });
    bus.finish();
    return result;
}

}  // namespace

ApplicationWindows applicationWindows(BusConnection& bus, const ObjectReference& root) {
    ApplicationWindows result;
    bus.call(root, atspi::accessible, "GetChildren", {}, [&](const BusReply& reply) {
        auto children = reply.readReferences();
        if (!children) {
            result.error = reply.error() == AXError::success ? AXError::failure : reply.error();
            return;
        }
        for (ObjectReference& child : *children) {
            if (auto object = atspi::resolved(std::move(child), root.name)) {
                result.windows.push_back({std::move(*object)});
            }
        }
        for (std::size_t i = 0; i < result.windows.size(); ++i) {
            bus.call(result.windows[i].object, atspi::accessible, "GetState", {}, [&result, i](const BusReply& states) {
                if (states.error() == AXError::cannotComplete) {
                    result.error = AXError::cannotComplete;
                }
                const States bits(states.readBits().value_or(0));
                result.windows[i].isActive = bits.has(State::active);
                result.windows[i].isShowing = bits.has(State::showing);
            });
        }
    });
    bus.finish();
    return result;
}

FoundObject findFocusedObject(BusConnection& bus, const ObjectReference& root) {
    const ApplicationWindows windows = applicationWindows(bus, root);
    if (windows.error != AXError::success) {
        return {windows.error, std::nullopt};
    }
    std::vector<ObjectReference> active;
    std::vector<ObjectReference> all;
    for (const ApplicationWindow& window : windows.windows) {
        all.push_back(window.object);
        if (window.isActive) {
            active.push_back(window.object);
        }
    }
    if (active.size() == 1) {
        if (auto found = askForFocusedObject(bus, active.front())) {
            return *found;
        }
    }
    return FocusWalk(bus).run(active.empty() ? std::move(all) : std::move(active));
}

}  // namespace lomaris
