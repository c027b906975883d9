#include "platform/simulated/stored_item.h"

#include <algorithm>
#include <utility>

namespace lomaris::simulated {

StoredEntry* StoredItem::find(std::string_view type) {
    const auto found =
        std::find_if(entries.begin(), entries.end(), [type](const StoredEntry& entry) { return entry.type == type; });
    return found == entries.end() ? nullptr : &*found;
}

void StoredItem::store(std::string_view type, std::string_view bytes) {
    StoredEntry* entry = find(type);
    if (entry == nullptr) {
        entry = &entries.emplace_back();
        entry->type = type;
    }
    entry->bytes = bytes;
    entry->promiseOfOther = nullptr;
    entry->isPromisedHere = false;
}

void StoredItem::handPromisesToKeeper() {
    for (StoredEntry& entry : entries) {
        if (entry.isPromisedHere) {
            entry.keptBytes = provider->promisedData(entry.type);
        }
    }
}

void StoredItem::letKeeperKeepPromises() {
    for (StoredEntry& entry : entries) {
        if (entry.isPromisedHere && entry.keptBytes) {
            entry.bytes = entry.keptBytes;
            entry.isPromisedHere = false;
        }
    }
}

std::shared_ptr<StoredItem> storedItemOf(NewPasteboardItem item) {
    auto stored = std::make_shared<StoredItem>();
    for (const auto& [type, bytes] : item.data) {
        stored->store(type, bytes);
    }
    for (PasteboardType& type : item.promisedTypes) {
        if (stored->find(type) == nullptr) {
            const bool isPromised = item.provider != nullptr;
            stored->entries.push_back({std::move(type), std::nullopt, nullptr, isPromised, isPromised, std::nullopt});
        }
    }
    stored->provider = std::move(item.provider);
    return stored;
}

std::shared_ptr<StoredItem> storedItemOf(const CopiedItem& item) {
    auto stored = std::make_shared<StoredItem>();
    for (const auto& [type, bytes] : item.data) {
        stored->store(type, bytes);
    }
    for (const auto& [type, promise] : item.promises) {
        if (stored->find(type) == nullptr) {
            stored->entries.push_back({type, std::nullopt, promise, false, false, std::nullopt});
        }
    }
    return stored;
}

StandingItem standingItemOf(const StoredItem& item) {
    StandingItem standing;
    for (const StoredEntry& entry : item.entries) {
        if (entry.bytes) {
            standing.data.emplace_back(entry.type, *entry.bytes);
        } else {
            standing.promised.push_back(entry.type);
        }
    }
    return standing;
}

}  // namespace lomaris::simulated
