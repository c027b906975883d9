#include "platform/macos/pasteboard_promise.h"

#include "platform/macos/core_foundation.h"
#include "platform/macos/shielded_call.h"
#include "text/utf8.h"

#include <algorithm>
#include <utility>

namespace lomaris::macos {

NSPasteboardType pasteboardTypeFrom(const PasteboardType& type) {
    const CFOwned<CFStringRef> string = stringFrom(textFromUtf8(type));
    return (__bridge NSString*)string.get();
}

PasteboardType typeFrom(NSPasteboardType type) { return utf8FromText(textFrom((__bridge CFStringRef)type)); }

NSData* dataFrom(std::string_view bytes) { return [NSData dataWithBytes:bytes.data() length:bytes.size()]; }

Bytes bytesFrom(NSData* data) {
    // `bytes` of empty data may be null.
    return data.length == 0 ? Bytes() : Bytes(static_cast<const char*>(data.bytes), data.length);
}

namespace {

/// The bytes that a provider supplied, by type.
using Data = std::vector<std::pair<PasteboardType, Bytes>>;

/// The item that is passed to a provider: stores the bytes, and also sets them on the item if a reader waits for them.
class CollectingItem final : public PromisedItem {
public:
    /// `item` is nil if no reader waits. The bytes are added to `given`, which must outlive this object.
    CollectingItem(NSPasteboardItem* item, Data& given) : item_(item), given_(given) {}

    void setData(std::string_view bytes, const PasteboardType& type) override {
        given_.emplace_back(type, bytes);
        if (NSPasteboardType const name = pasteboardTypeFrom(type); item_ != nil && name != nil) {
            [item_ setData:dataFrom(bytes) forType:name];
        }
    }

private:
    NSPasteboardItem* item_;
    Data& given_;
};

}  // namespace

}  // namespace lomaris::macos

@implementation LomarisPasteboardPromise {
    std::shared_ptr<lomaris::PasteboardDataProvider> _provider;
    /// The types that no reader has requested yet.
    std::vector<lomaris::PasteboardType> _openTypes;
    /// What the provider supplied, until the promise is over.
    lomaris::macos::Data _given;
    /// This object itself, from the write until the pasteboard has finished with it.
    LomarisPasteboardPromise* _self;
}

- (instancetype)initWithProvider:(std::shared_ptr<lomaris::PasteboardDataProvider>)provider
                           types:(std::vector<lomaris::PasteboardType>)types {
    self = [super init];
    if (self != nil) {
        _provider = std::move(provider);
        _openTypes = std::move(types);
    }
    return self;
}

- (BOOL)promiseOn:(NSPasteboardItem*)item {
    NSMutableArray<NSPasteboardType>* const names = [NSMutableArray array];
    for (const lomaris::PasteboardType& type : _openTypes) {
        NSPasteboardType const name = lomaris::macos::pasteboardTypeFrom(type);
        if (name == nil) {
            return NO;
        }
        [names addObject:name];
    }
    return [item setDataProvider:self forTypes:names];
}

- (void)standUntilFinished {
    _self = self;
}

- (std::vector<std::pair<lomaris::PasteboardType, lomaris::Bytes>>)takeOpenData {
    lomaris::macos::Data data;
    lomaris::macos::CollectingItem collected(nil, data);
    for (const lomaris::PasteboardType& type : std::exchange(_openTypes, {})) {
        if (_provider) {
            _provider->provideData(collected, type);
        }
    }
    _given.insert(_given.end(), data.begin(), data.end());
    return data;
}

- (std::vector<std::pair<lomaris::PasteboardType, lomaris::Bytes>>)givenData {
    return _given;
}

- (void)letGo {
    _provider.reset();
    _openTypes.clear();
    _given.clear();
}

- (void)pasteboard:(NSPasteboard*)pasteboard item:(NSPasteboardItem*)item provideDataForType:(NSPasteboardType)type {
    lomaris::macos::runShielded([&] {
        const lomaris::PasteboardType asked = lomaris::macos::typeFrom(type);
        std::erase(_openTypes, asked);
        if (const auto provider = _provider) {
            lomaris::macos::CollectingItem target(item, _given);
            provider->provideData(target, asked);
        }
    });
}

- (void)pasteboardFinishedWithDataProvider:(NSPasteboard*)pasteboard {
    lomaris::macos::runShielded([&] {
        LomarisPasteboardPromise* const last = std::exchange(_self, nil);
        [last letGo];
    });
}

@end
