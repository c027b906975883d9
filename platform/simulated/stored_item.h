#pragma once

#include "platform/pasteboard.h"
#include "platform/simulated/simulated_pasteboard_item.h"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace lomaris::simulated {

/// One type of an item: its bytes, or the promise of another program or of this process. Without any of these, the type
/// has no data.
struct StoredEntry {
    PasteboardType type;
    std::optional<Bytes> bytes;
    std::function<std::optional<Bytes>()> promiseOfOther;
    bool isPromisedHere = false;
    /// Stays true once the promise is fulfilled.
    bool wasPromisedHere = false;
    /// The bytes that the keeper supplies after this process has ended; nullopt if there is no keeper or they are not
    /// known.
    std::optional<Bytes> keptBytes;
};

/// An item on the pasteboard, shared with the code that reads it. `isGone` is true once the pasteboard's contents have
/// changed.
struct StoredItem {
    unsigned number = 0;
    std::vector<StoredEntry> entries;
    std::shared_ptr<PasteboardDataProvider> provider;
    bool isGone = false;

    /// Null if the item does not have the type.
    [[nodiscard]] StoredEntry* find(std::string_view type);
    /// Sets the bytes of a type, which is added if the item does not have it.
    void store(std::string_view type, std::string_view bytes);
    /// Gives the keeper the bytes with which it can fulfil the promises of this process.
    void handPromisesToKeeper();
    /// Makes the keeper fulfil the promises, because this process has ended.
    void letKeeperKeepPromises();
};

[[nodiscard]] std::shared_ptr<StoredItem> storedItemOf(NewPasteboardItem item);
[[nodiscard]] std::shared_ptr<StoredItem> storedItemOf(const CopiedItem& item);
[[nodiscard]] StandingItem standingItemOf(const StoredItem& item);

}  // namespace lomaris::simulated
