#include "platform/macos/pasteboard.h"

#include "platform/macos/core_foundation.h"
#include "platform/macos/pasteboard_promise.h"
#include "platform/macos/shielded_call.h"
#include "platform/posix/file_lock_hold.h"

#include <limits.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace lomaris::macos {

namespace {

/// The path of the file that all processes of this user lock for an operation; empty if the user has no such directory.
std::string lockPath() {
    std::array<char, PATH_MAX> directory{};
    const std::size_t length = confstr(_CS_DARWIN_USER_TEMP_DIR, directory.data(), directory.size());
    if (length == 0 || length > directory.size()) {
        return {};
    }
    return std::string(directory.data()) + "lomaris-macos-bridge.pasteboard";
}

std::int64_t countOf(NSPasteboard* pasteboard) { return pasteboard.changeCount; }

class MacOSItem final : public PasteboardItem {
public:
    /// `changeCount` is that of the contents to which the item belongs.
    MacOSItem(NSPasteboardItem* item, std::int64_t changeCount) : item_(item), changeCount_(changeCount) {}

    std::vector<PasteboardType> types() override {
        return answerOf<std::vector<PasteboardType>>([this] {
            std::vector<PasteboardType> types;
            if (stands()) {
                for (NSPasteboardType type in item_.types) {
                    types.push_back(typeFrom(type));
                }
            }
            return types;
        });
    }

    std::optional<Bytes> data(const PasteboardType& type) override {
        return answerOf<std::optional<Bytes>>([&]() -> std::optional<Bytes> {
            NSPasteboardType const name = pasteboardTypeFrom(type);
            if (name == nil || !stands()) {
                return std::nullopt;
            }
            NSData* const data = [item_ dataForType:name];
            return data == nil ? std::nullopt : std::optional(bytesFrom(data));
        });
    }

private:
    /// False once the contents have changed. Without this check, an item of this process could still return data from
    /// its own memory.
    [[nodiscard]] bool stands() const { return countOf(NSPasteboard.generalPasteboard) == changeCount_; }

    NSPasteboardItem* item_;
    std::int64_t changeCount_;
};

using Data = std::vector<std::pair<PasteboardType, Bytes>>;

/// True if the item accepted all of it.
bool setData(NSPasteboardItem* item, const Data& data) {
    bool tookAll = true;
    for (const auto& [type, bytes] : data) {
        NSPasteboardType const name = pasteboardTypeFrom(type);
        tookAll = name != nil && [item setData:dataFrom(bytes) forType:name] && tookAll;
    }
    return tookAll;
}

/// An item for the pasteboard and its promise, which is nil if it promises nothing.
struct WrittenItem {
    NSPasteboardItem* item = nil;
    LomarisPasteboardPromise* promise = nil;
    Data data;
};

/// nullopt if the promise was refused.
std::optional<WrittenItem> writtenItemFrom(NewPasteboardItem newItem) {
    WrittenItem written{[NSPasteboardItem new], nil, std::move(newItem.data)};
    if (newItem.provider && !newItem.promisedTypes.empty()) {
        written.promise = [[LomarisPasteboardPromise alloc] initWithProvider:std::move(newItem.provider)
                                                                       types:std::move(newItem.promisedTypes)];
        if (![written.promise promiseOn:written.item]) {
            return std::nullopt;
        }
    }
    // A refused type is left out.
    static_cast<void>(setData(written.item, written.data));
    return written;
}

bool writeObjects(const std::vector<WrittenItem>& items) {
    NSMutableArray<NSPasteboardItem*>* const objects = [NSMutableArray array];
    for (const WrittenItem& written : items) {
        [objects addObject:written.item];
    }
    return [NSPasteboard.generalPasteboard writeObjects:objects];
}

}  // namespace

/// The items that this process wrote since it last cleared the pasteboard; empty if none of them has a promise.
class MacOSPasteboard::Promises {
public:
    Promises() = default;
    Promises(const Promises&) = delete;
    Promises& operator=(const Promises&) = delete;
    ~Promises() { letGo(); }

    [[nodiscard]] bool empty() const { return items_.empty(); }

    /// Must be called after each write; `changeCount` is the pasteboard's count after it.
    void add(std::vector<WrittenItem> items, std::int64_t changeCount) {
        changeCount_ = changeCount;
        const bool hasPromises =
            std::any_of(items.begin(), items.end(), [](const auto& one) { return one.promise != nil; });
        if (hasPromises || !empty()) {
            std::move(items.begin(), items.end(), std::back_inserter(items_));
        }
    }

    [[nodiscard]] bool standAt(std::int64_t changeCount) const { return changeCount == changeCount_; }

    /// Replaces every promise by its data: on the existing items, which no reader notices, or else on new items.
    void keep() {
        bool tookAll = true;
        for (const WrittenItem& written : items_) {
            if (written.promise != nil) {
                tookAll = setData(written.item, [written.promise takeOpenData]) && tookAll;
            }
        }
        if (!tookAll) {
            writeAnew();
        }
    }

    void letGo() {
        for (const WrittenItem& written : std::exchange(items_, {})) {
            [written.promise letGo];
        }
    }

private:
    /// Writes all data again, because what the provider supplied to readers is on the old items only.
    void writeAnew() const {
        std::vector<WrittenItem> anew;
        for (const WrittenItem& written : items_) {
            anew.push_back({[NSPasteboardItem new], nil, {}});
            static_cast<void>(setData(anew.back().item, written.data));
            if (written.promise != nil) {
                static_cast<void>(setData(anew.back().item, [written.promise givenData]));
            }
        }
        [NSPasteboard.generalPasteboard clearContents];
        writeObjects(anew);
    }

    std::vector<WrittenItem> items_;
    std::int64_t changeCount_ = 0;
};

MacOSPasteboard::MacOSPasteboard(RunLoop& runLoop) : runLoop_(runLoop), promises_(std::make_unique<Promises>()) {}

MacOSPasteboard::~MacOSPasteboard() { finish(); }

std::vector<std::unique_ptr<PasteboardItem>> MacOSPasteboard::items() {
    return answerOf<std::vector<std::unique_ptr<PasteboardItem>>>([] {
        NSPasteboard* const pasteboard = NSPasteboard.generalPasteboard;
        // Read before the items: if the contents change in between, the items return no data instead of wrong data.
        const std::int64_t changeCount = countOf(pasteboard);
        std::vector<std::unique_ptr<PasteboardItem>> items;
        for (NSPasteboardItem* item in pasteboard.pasteboardItems) {
            items.push_back(std::make_unique<MacOSItem>(item, changeCount));
        }
        return items;
    });
}

std::optional<Text> MacOSPasteboard::string() {
    return answerOf<std::optional<Text>>([]() -> std::optional<Text> {
        NSString* const string = [NSPasteboard.generalPasteboard stringForType:NSPasteboardTypeString];
        return string == nil ? std::nullopt : std::optional(textFrom((__bridge CFStringRef)string));
    });
}

std::int64_t MacOSPasteboard::changeCount() {
    lastChangeCount_ = answerOf([] { return countOf(NSPasteboard.generalPasteboard); }, lastChangeCount_);
    return lastChangeCount_;
}

void MacOSPasteboard::clearContents() {
    runShielded([] { [NSPasteboard.generalPasteboard clearContents]; });
    runShielded([this] { promises_->letGo(); });
}

bool MacOSPasteboard::writeItems(std::vector<NewPasteboardItem> items) {
    return answerOf<bool>([&] {
        std::vector<WrittenItem> written;
        for (NewPasteboardItem& newItem : items) {
            auto item = writtenItemFrom(std::move(newItem));
            if (!item) {
                return false;
            }
            written.push_back(std::move(*item));
        }
        if (!writeObjects(written)) {
            return false;
        }
        for (const WrittenItem& item : written) {
            [item.promise standUntilFinished];
        }
        promises_->add(std::move(written), countOf(NSPasteboard.generalPasteboard));
        return true;
    });
}

std::unique_ptr<PasteboardHold> MacOSPasteboard::tryHold() { return FileLockHold::tryHold(lockPath()); }

void MacOSPasteboard::finish() {
    if (promises_->empty()) {
        return;
    }
    // A target that has already sent its request waits for the reply to that request.
    runLoop_.serveWaiting(Duration::zero());
    runShielded([this] {
        if (promises_->standAt(countOf(NSPasteboard.generalPasteboard))) {
            promises_->keep();
        }
    });
    // Serves requests that arrived in the meantime.
    runLoop_.serveWaiting(Duration::zero());
    runShielded([this] { promises_->letGo(); });
}

}  // namespace lomaris::macos
