#include "platform/simulated/reaction.h"

#include "platform/attributes.h"
#include "platform/simulated/applications.h"
#include "platform/simulated/simulated_element.h"
#include "platform/simulated/text_behaviour.h"
#include "platform/simulated/world.h"
#include "text/utf8.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace lomaris {
namespace {

bool isHighSurrogate(char16_t unit) { return unit >= 0xd800 && unit < 0xdc00; }
bool isLowSurrogate(char16_t unit) { return unit >= 0xdc00 && unit < 0xe000; }

void writeOverSelection(simulated::TextState& state, Text text) {
    static_cast<void>(simulated::setText(state, attribute::selectedText, std::move(text)));
}

CopiedItem itemOf(PasteboardType type, Bytes bytes) {
    CopiedItem item;
    item.data.emplace_back(std::move(type), std::move(bytes));
    return item;
}

/// The range of the code point before the insertion point; empty at the beginning of the text.
TextRange before(TextRange insertionPoint, TextView text) {
    const auto end = static_cast<std::size_t>(insertionPoint.location);
    if (end == 0) {
        return insertionPoint;
    }
    const bool isPair = end > 1 && isLowSurrogate(text[end - 1]) && isHighSurrogate(text[end - 2]);
    const std::int64_t length = isPair ? 2 : 1;
    return {insertionPoint.location - length, length};
}

}  // namespace

Reaction Reaction::after(Duration delay) const {
    Reaction later = *this;
    for (Part& part : later.parts_) {
        part.delay += delay;
    }
    return later;
}

Reaction together(const std::vector<Reaction>& reactions) {
    Reaction all;
    for (const Reaction& reaction : reactions) {
        for (const Reaction::Part& part : reaction.parts_) {
            const auto same = std::find_if(all.parts_.begin(), all.parts_.end(),
                                           [&part](const Reaction::Part& each) { return each.delay == part.delay; });
            if (same == all.parts_.end()) {
                all.parts_.push_back(part);
            } else {
                same->acts.insert(same->acts.end(), part.acts.begin(), part.acts.end());
            }
        }
    }
    return all;
}

Reaction ignores() {
    return Reaction([](simulated::World&) {});
}

Reaction copies(TextView text) { return copiesOnly(PasteboardType(pasteboard_type::string), utf8FromText(text)); }

Reaction copiesOnly(PasteboardType type, Bytes bytes) {
    return copiesItems({itemOf(std::move(type), std::move(bytes))});
}

Reaction copiesItems(std::vector<CopiedItem> items) {
    return Reaction([items = std::move(items)](simulated::World& world) {
        world.pasteboard.copyAsOther(items, world.reactor.acting());
    });
}

Reaction copiesSelectionOf(const SimulatedTextElement& element) {
    return Reaction([element](simulated::World& world) {
        const TextRange selection = element.selection();
        if (selection.length == 0) {
            return;
        }
        const Text selected = element.text().substr(static_cast<std::size_t>(selection.location),
                                                    static_cast<std::size_t>(selection.length));
        world.pasteboard.copyAsOther({itemOf(PasteboardType(pasteboard_type::string), utf8FromText(selected))},
                                     world.reactor.acting());
    });
}

Reaction pastesInto(const SimulatedTextElement& element) {
    return Reaction([&state = element.state()](simulated::World& world) {
        world.pasteboard.readAsOther(PasteboardType(pasteboard_type::string), [&state](std::optional<Bytes> bytes) {
            if (bytes && simulated::isAlive(state.process)) {
                writeOverSelection(*state.text, textFromUtf8(*bytes));
            }
        });
    });
}

Reaction deletesSelectionOf(const SimulatedTextElement& element) {
    return Reaction([&state = element.state()](simulated::World&) {
        simulated::TextState& text = *state.text;
        if (text.selection.length == 0) {
            text.selection = before(text.selection, text.text);
        }
        writeOverSelection(text, Text());
    });
}

}  // namespace lomaris
