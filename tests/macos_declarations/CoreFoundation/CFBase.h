#pragma once

// Declarations of the part of Core Foundation that this project uses, written from its public documentation, so that
// the sources for macOS can be compiled and checked on other systems. Only what is used is declared here: the check
// fails for any other symbol.

#include <stdint.h>
#include <sys/types.h>

// Annotations of nullability, transfer of ownership and bridging, if the compiler supports them.
#if defined(__clang__)
#define CF_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define CF_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define CF_RETURNS_RETAINED __attribute__((cf_returns_retained))
#else
#define _Nonnull
#define _Nullable
#define CF_ASSUME_NONNULL_BEGIN
#define CF_ASSUME_NONNULL_END
#define CF_RETURNS_RETAINED
#endif

#if defined(__clang__) && defined(__OBJC__)
#define CF_BRIDGED_TYPE(type) __attribute__((objc_bridge(type)))
#else
#define CF_BRIDGED_TYPE(type)
#endif

// Enumerations with a fixed underlying type; options are plain integers in C++.
#define CF_ENUM(type, name) enum name : type
#define CF_OPTIONS(type, name) \
    typedef type name;         \
    enum : type

CF_ASSUME_NONNULL_BEGIN
#ifdef __cplusplus
extern "C" {
#endif

// Basic types.
typedef unsigned char Boolean;
typedef int32_t SInt32;
typedef uint32_t UInt32;
typedef unsigned short UniChar;
typedef long CFIndex;
typedef unsigned long CFTypeID;
typedef unsigned long CFOptionFlags;
typedef unsigned long CFHashCode;

// A location and a length.
typedef struct CFRange {
    CFIndex location;
    CFIndex length;
} CFRange;

static inline CFRange CFRangeMake(CFIndex location, CFIndex length) {
    CFRange range;
    range.location = location;
    range.length = length;
    return range;
}

// Objects of any type: counting references, determining the type, comparing.
typedef const CF_BRIDGED_TYPE(id) void* CFTypeRef;
CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);
Boolean CFEqual(CFTypeRef first, CFTypeRef second);

// Allocators: only the default one, for which null may also be passed.
typedef const struct __CFAllocator* CFAllocatorRef;
extern const CFAllocatorRef _Nullable kCFAllocatorDefault;

// The null object.
typedef const struct CF_BRIDGED_TYPE(NSNull) __CFNull* CFNullRef;
extern const CFNullRef kCFNull;
CFTypeID CFNullGetTypeID(void);

#ifdef __cplusplus
}
#endif
CF_ASSUME_NONNULL_END
