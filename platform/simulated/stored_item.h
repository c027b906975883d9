#pragma once

#include "platform/pasteboard.h"
#include "platform/simulated/simulated_pasteboard_item.h"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace lomaris::simulated {

/// One type of an item: its bytes, or who promised them. Without any of the three the item has the type without data.
struct StoredEntry {
    PasteboardType type;
    std::optional<Bytes> bytes;
    std::function<std::optional<Bytes>()> promiseOfOther;
    bool isPromisedHere = false;
    /// Stays true once the promise is kept.
    bool wasPromisedHere = false;
    /// What the keeper gives in the place of this process; nullopt if there is no keeper or the bytes are not known.
    std::optional<Bytes> keptBytes;
};

/// An item on the pasteboard. Those who ask for it share it; `isGone` once the pasteboard has other contents.
struct StoredItem {
    unsigned number = 0;
    std::vector<StoredEntry> entries;
    std::shared_ptr<PasteboardDataProvider> provider;
    bool isGone = false;

    /// Null where the item does not have the type.
    [[nodiscard]] StoredEntry* find(std::string_view type);
    /// Gives a type its bytes; a type that the item has not is added.
    void store(std::string_view type, std::string_view bytes);
    /// Gives the keeper what it must know to keep the promises of this process.
    void handPromisesToKeeper();
    /// The keeper takes the place of this process, which has ended.
    void letKeeperKeepPromises();
};

[[nodiscard]] std::shared_ptr<StoredItem> storedItemOf(NewPasteboardItem item);
[[nodiscard]] std::shared_ptr<StoredItem> storedItemOf(const CopiedItem& item);
[[nodiscard]] StandingItem standingItemOf(const StoredItem& item);

}  // namespace lomaris::simulated
