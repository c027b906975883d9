#pragma once

// Declarations of the part of AppKit that this project uses; see CoreFoundation/CFBase.h.

#include <Foundation/Foundation.h>
#include <sys/types.h>

NS_ASSUME_NONNULL_BEGIN

// Types of what stands on a pasteboard.
typedef NSString* NSPasteboardType;
extern NSPasteboardType const NSPasteboardTypeString;

// What can be written onto a pasteboard.
@protocol NSPasteboardWriting <NSObject>
@end

@class NSPasteboard;
@class NSPasteboardItem;

// Who is asked for the data of a type that was only promised. The second message is optional in the system, and
// required here, so that a misspelt one is found.
@protocol NSPasteboardItemDataProvider <NSObject>
- (void)pasteboard:(nullable NSPasteboard*)pasteboard
                  item:(NSPasteboardItem*)item
    provideDataForType:(NSPasteboardType)type;
- (void)pasteboardFinishedWithDataProvider:(NSPasteboard*)pasteboard;
@end

// An item: reading it, and making one.
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
