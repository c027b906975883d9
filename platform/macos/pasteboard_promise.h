#pragma once

// Only for Objective-C++ sources.

#include "platform/pasteboard.h"

#include <AppKit/AppKit.h>

#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris::macos {

/// A pasteboard type; nil if the platform cannot create the string.
NSPasteboardType _Nullable pasteboardTypeFrom(const PasteboardType& type);

/// The name of a type in UTF-8.
PasteboardType typeFrom(NSPasteboardType _Nonnull type);

/// A copy of the bytes.
NSData* _Nonnull dataFrom(std::string_view bytes);

/// A copy of the bytes.
Bytes bytesFrom(NSData* _Nonnull data);

}  // namespace lomaris::macos

/// Connects the pasteboard to the provider of one item. The pasteboard may call it until it reports that it has
/// finished, so the object keeps itself alive until then; it releases the provider as soon as the promise is over.
@interface LomarisPasteboardPromise : NSObject <NSPasteboardItemDataProvider>

- (nonnull instancetype)initWithProvider:(std::shared_ptr<lomaris::PasteboardDataProvider>)provider
                                   types:(std::vector<lomaris::PasteboardType>)types;

/// Promises the types on `item`. YES if the item accepted the promise.
- (BOOL)promiseOn:(nonnull NSPasteboardItem*)item;

/// Keeps this object alive until the pasteboard has finished with it. Must be called once the item is on the
/// pasteboard.
- (void)standUntilFinished;

/// Requests the types that no reader has requested yet from the provider and returns what it supplied.
- (std::vector<std::pair<lomaris::PasteboardType, lomaris::Bytes>>)takeOpenData;

/// Everything that the provider supplied so far, including what readers requested.
- (std::vector<std::pair<lomaris::PasteboardType, lomaris::Bytes>>)givenData;

/// Releases the provider and what it supplied; later requests get nothing.
- (void)letGo;

@end
