#include "accessibility/fallback/pasteboard_snapshot.h"

namespace lomaris {

PasteboardSnapshot PasteboardSnapshot::capture(Pasteboard& pasteboard) {
    PasteboardSnapshot snapshot;
    for (const auto& item : pasteboard.items()) {
        PasteboardItemContents contents;
        for (const auto& type : item->types()) {
            if (auto bytes = item->data(type)) {
                contents.emplace_back(type, std::move(*bytes));
            }
        }
        snapshot.items_.push_back(std::move(contents));
    }
    return snapshot;
}

void PasteboardSnapshot::restore(Pasteboard& pasteboard) const {
    // Copied first: where there is no memory for that, the pasteboard stays as it is.
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
