#pragma once

#include <CoreFoundation/CFBase.h>

CF_ASSUME_NONNULL_BEGIN
#ifdef __cplusplus
extern "C" {
#endif

// Strings: conversion from and to UTF-16 units, and constant strings, which are never released.
typedef const struct CF_BRIDGED_TYPE(NSString) __CFString* CFStringRef;
CFTypeID CFStringGetTypeID(void);
CFStringRef _Nullable CFStringCreateWithCharacters(CFAllocatorRef _Nullable allocator,
                                                   const UniChar* _Nullable characters,
                                                   CFIndex characterCount) CF_RETURNS_RETAINED;
CFIndex CFStringGetLength(CFStringRef string);
void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer);
CFStringRef __CFStringMakeConstantString(const char* string);
#define CFSTR(literal) __CFStringMakeConstantString("" literal "")

// Locales: only the user's current one.
typedef const struct CF_BRIDGED_TYPE(NSLocale) __CFLocale* CFLocaleRef;
CFLocaleRef _Nullable CFLocaleCopyCurrent(void) CF_RETURNS_RETAINED;

// Searching in strings.
CF_OPTIONS(CFOptionFlags, CFStringCompareFlags){kCFCompareCaseInsensitive = 1};
Boolean CFStringFindWithOptionsAndLocale(CFStringRef string, CFStringRef sought, CFRange range,
                                         CFStringCompareFlags options, CFLocaleRef _Nullable locale,
                                         CFRange* _Nullable found);

// Booleans.
typedef const struct CF_BRIDGED_TYPE(NSNumber) __CFBoolean* CFBooleanRef;
extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;
CFTypeID CFBooleanGetTypeID(void);
Boolean CFBooleanGetValue(CFBooleanRef boolean);

// Numbers: conversion from and to 64-bit integers and doubles. A lossy conversion returns false.
typedef const struct CF_BRIDGED_TYPE(NSNumber) __CFNumber* CFNumberRef;
CF_ENUM(CFIndex, CFNumberType){kCFNumberSInt64Type = 4, kCFNumberDoubleType = 13};
CFTypeID CFNumberGetTypeID(void);
CFNumberRef _Nullable CFNumberCreate(CFAllocatorRef _Nullable allocator, CFNumberType type,
                                     const void* value) CF_RETURNS_RETAINED;
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);

// Arrays, with the callbacks that retain their members.
typedef const void* _Nullable (*CFArrayRetainCallBack)(CFAllocatorRef _Nullable allocator, const void* _Nullable value);
typedef void (*CFArrayReleaseCallBack)(CFAllocatorRef _Nullable allocator, const void* _Nullable value);
typedef CFStringRef _Nullable (*CFArrayCopyDescriptionCallBack)(const void* _Nullable value);
typedef Boolean (*CFArrayEqualCallBack)(const void* _Nullable first, const void* _Nullable second);
typedef struct CFArrayCallBacks {
    CFIndex version;
    CFArrayRetainCallBack _Nullable retain;
    CFArrayReleaseCallBack _Nullable release;
    CFArrayCopyDescriptionCallBack _Nullable copyDescription;
    CFArrayEqualCallBack _Nullable equal;
} CFArrayCallBacks;
typedef const struct CF_BRIDGED_TYPE(NSArray) __CFArray* CFArrayRef;
extern const CFArrayCallBacks kCFTypeArrayCallBacks;
CFTypeID CFArrayGetTypeID(void);
CFArrayRef _Nullable CFArrayCreate(CFAllocatorRef _Nullable allocator, const void* _Nullable* _Nullable values,
                                   CFIndex count, const CFArrayCallBacks* _Nullable callBacks) CF_RETURNS_RETAINED;
CFIndex CFArrayGetCount(CFArrayRef array);
const void* _Nullable CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);

// Dictionaries, with the callbacks that retain their keys and values.
typedef const void* _Nullable (*CFDictionaryRetainCallBack)(CFAllocatorRef _Nullable allocator,
                                                            const void* _Nullable value);
typedef void (*CFDictionaryReleaseCallBack)(CFAllocatorRef _Nullable allocator, const void* _Nullable value);
typedef CFStringRef _Nullable (*CFDictionaryCopyDescriptionCallBack)(const void* _Nullable value);
typedef Boolean (*CFDictionaryEqualCallBack)(const void* _Nullable first, const void* _Nullable second);
typedef CFHashCode (*CFDictionaryHashCallBack)(const void* _Nullable value);
typedef struct CFDictionaryKeyCallBacks {
    CFIndex version;
    CFDictionaryRetainCallBack _Nullable retain;
    CFDictionaryReleaseCallBack _Nullable release;
    CFDictionaryCopyDescriptionCallBack _Nullable copyDescription;
    CFDictionaryEqualCallBack _Nullable equal;
    CFDictionaryHashCallBack _Nullable hash;
} CFDictionaryKeyCallBacks;
typedef struct CFDictionaryValueCallBacks {
    CFIndex version;
    CFDictionaryRetainCallBack _Nullable retain;
    CFDictionaryReleaseCallBack _Nullable release;
    CFDictionaryCopyDescriptionCallBack _Nullable copyDescription;
    CFDictionaryEqualCallBack _Nullable equal;
} CFDictionaryValueCallBacks;
typedef const struct CF_BRIDGED_TYPE(NSDictionary) __CFDictionary* CFDictionaryRef;
extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;
CFDictionaryRef _Nullable CFDictionaryCreate(
    CFAllocatorRef _Nullable allocator, const void* _Nullable* _Nullable keys, const void* _Nullable* _Nullable values,
    CFIndex count, const CFDictionaryKeyCallBacks* _Nullable keyCallBacks,
    const CFDictionaryValueCallBacks* _Nullable valueCallBacks) CF_RETURNS_RETAINED;

#ifdef __cplusplus
}
#endif
CF_ASSUME_NONNULL_END
