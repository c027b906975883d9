#pragma once

// Declarations of the part of AppKit that this project uses; see CoreFoundation/CFBase.h.

#include <Foundation/Foundation.h>
#include <sys/types.h>

NS_ASSUME_NONNULL_BEGIN

// Pasteboard types.
typedef NSString* NSPasteboardType;
extern NSPasteboardType const NSPasteboardTypeString;

// Objects that can be written to a pasteboard.
@protocol NSPasteboardWriting <NSObject>
@end

@class NSPasteboard;
@class NSPasteboardItem;

// The provider of the data of promised types. The second message is optional in the real protocol; it is required here,
// so that a misspelled one is detected.
@protocol NSPasteboardItemDataProvider <NSObject>
- (void)pasteboard:(nullable NSPasteboard*)pasteboard
                  item:(NSPasteboardItem*)item
    provideDataForType:(NSPasteboardType)type;
- (void)pasteboardFinishedWithDataProvider:(NSPasteboard*)pasteboard;
@end

// Pasteboard items: reading and creating them.
@interface NSPasteboardItem : NSObject <NSPasteboardWriting>
@property(readonly, copy) NSArray<NSPasteboardType>* types;
- (nullable NSData*)dataForType:(NSPasteboardType)type;
- (BOOL)setData:(NSData*)data forType:(NSPasteboardType)type;
- (BOOL)setDataProvider:(id<NSPasteboardItemDataProvider>)provider forTypes:(NSArray<NSPasteboardType>*)types;
@end

// The pasteboard.
@interface NSPasteboard : NSObject
@property(class, readonly, strong) NSPasteboard* generalPasteboard;
@property(readonly) NSInteger changeCount;
@property(nullable, readonly, copy) NSArray<NSPasteboardItem*>* pasteboardItems;
- (NSInteger)clearContents;
- (BOOL)writeObjects:(NSArray<id<NSPasteboardWriting>>*)objects;
- (nullable NSString*)stringForType:(NSPasteboardType)type;
@end

// Running applications.
@interface NSRunningApplication : NSObject
@property(readonly) pid_t processIdentifier;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(nullable, readonly, copy) NSString* localizedName;
@property(readonly, getter=isTerminated) BOOL terminated;
+ (nullable instancetype)runningApplicationWithProcessIdentifier:(pid_t)processIdentifier;
@end

// The applications of the session.
@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(nullable, readonly, strong) NSRunningApplication* frontmostApplication;
@end

NS_ASSUME_NONNULL_END
