#include "accessibility/fallback/pasteboard_snapshot.h"

namespace lomaris {

namespace {

/// The bytes of every type of every item. Nullopt if another program wrote while they were fetched: an item then has no
/// types any more.
std::optional<std::vector<PasteboardItemContents>> fetchAll(Pasteboard& pasteboard) {
    std::vector<PasteboardItemContents> items;
    for (const auto& item : pasteboard.items()) {
        const std::vector<PasteboardType> types = item->types();
        PasteboardItemContents& contents = items.emplace_back();
        for (const auto& type : types) {
            if (auto bytes = item->data(type)) {
                contents.emplace_back(type, std::move(*bytes));
            }
        }
        if (contents.size() < types.size() && item->types().empty()) {
            return std::nullopt;
        }
    }
    return items;
}

}  // namespace

PasteboardSnapshot PasteboardSnapshot::capture(Pasteboard& pasteboard) {
    PasteboardSnapshot snapshot;
    auto items = fetchAll(pasteboard);
    if (!items) {
        // Once more, for what the other program wrote; not again and again, as fetching may take seconds.
        items = fetchAll(pasteboard);
    }
    if (items) {
        snapshot.items_ = std::move(*items);
    }
    return snapshot;
}

void PasteboardSnapshot::restore(Pasteboard& pasteboard) const {
    // Copies first, so that the pasteboard is unchanged if memory runs out.
    std::vector<NewPasteboardItem> newItems;
    for (const auto& contents : items_) {
        newItems.push_back({.data = contents, .promisedTypes = {}, .provider = nullptr});
    }
    pasteboard.clearContents();
    if (!newItems.empty()) {
        static_cast<void>(pasteboard.writeItems(std::move(newItems)));
    }
}

}  // namespace lomaris
