#pragma once

// For Objective-C++ sources alone.

#include "platform/pasteboard.h"

#include <AppKit/AppKit.h>

#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris::macos {

/// A pasteboard type, or none where the platform cannot make the string.
NSPasteboardType _Nullable pasteboardTypeFrom(const PasteboardType& type);

/// The name of a type in UTF-8.
PasteboardType typeFrom(NSPasteboardType _Nonnull type);

/// A copy of the bytes.
NSData* _Nonnull dataFrom(std::string_view bytes);

/// A copy of the bytes.
Bytes bytesFrom(NSData* _Nonnull data);

}  // namespace lomaris::macos

/// Stands between the pasteboard and the provider of one item. The pasteboard may come back to it at any time until it
/// says that it has finished, so it keeps itself alive until then; the provider it lets go of as soon as the promise
/// is over.
@interface LomarisPasteboardPromise : NSObject <NSPasteboardItemDataProvider>

- (nonnull instancetype)initWithProvider:(std::shared_ptr<lomaris::PasteboardDataProvider>)provider
                                   types:(std::vector<lomaris::PasteboardType>)types;

/// Promises the types on `item`; whether the item took the promise.
- (BOOL)promiseOn:(nonnull NSPasteboardItem*)item;

/// Stays alive until the pasteboard has finished with it. To be called once the item stands on the pasteboard.
- (void)standUntilFinished;

/// Asks the provider for the types that nobody has asked for yet; what it gave for them.
- (std::vector<std::pair<lomaris::PasteboardType, lomaris::Bytes>>)takeOpenData;

/// All that the provider gave so far, to readers as well.
- (std::vector<std::pair<lomaris::PasteboardType, lomaris::Bytes>>)givenData;

/// Lets go of the provider and of what it gave; who asks from now on gets nothing.
- (void)letGo;

@end
