#pragma once

// Declarations of the part of the Accessibility interface that this project uses; see CoreFoundation/CFBase.h.

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>

CF_ASSUME_NONNULL_BEGIN
#ifdef __cplusplus
extern "C" {
#endif

// Result codes.
CF_ENUM(SInt32, AXError){
    kAXErrorSuccess = 0,
    kAXErrorFailure = -25200,
    kAXErrorIllegalArgument = -25201,
    kAXErrorInvalidUIElement = -25202,
    kAXErrorCannotComplete = -25204,
    kAXErrorAttributeUnsupported = -25205,
    kAXErrorActionUnsupported = -25206,
    kAXErrorNotImplemented = -25208,
    kAXErrorAPIDisabled = -25211,
    kAXErrorNoValue = -25212,
};

// The permission to use accessibility.
Boolean AXIsProcessTrusted(void);
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef _Nullable options);

// Elements.
typedef const struct CF_BRIDGED_TYPE(id) __AXUIElement* AXUIElementRef;
CFTypeID AXUIElementGetTypeID(void);
AXUIElementRef AXUIElementCreateApplication(pid_t pid) CF_RETURNS_RETAINED;
AXUIElementRef AXUIElementCreateSystemWide(void) CF_RETURNS_RETAINED;
AXError AXUIElementGetPid(AXUIElementRef element, pid_t* pid);

// Attributes and actions of elements.
CF_OPTIONS(UInt32, AXCopyMultipleAttributeOptions){kAXCopyMultipleAttributeOptionStopOnError = 0x1};
AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                      CFTypeRef _Nullable* _Nonnull CF_RETURNS_RETAINED value);
AXError AXUIElementCopyMultipleAttributeValues(AXUIElementRef element, CFArrayRef attributes,
                                               AXCopyMultipleAttributeOptions options,
                                               CFArrayRef _Nullable* _Nonnull CF_RETURNS_RETAINED values);
AXError AXUIElementIsAttributeSettable(AXUIElementRef element, CFStringRef attribute, Boolean* settable);
AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef value);
AXError AXUIElementPerformAction(AXUIElementRef element, CFStringRef action);

// Boxed values: a structure of one of these types in an object.
typedef const struct CF_BRIDGED_TYPE(id) __AXValue* AXValueRef;
CF_ENUM(UInt32, AXValueType){kAXValueTypeCFRange = 4, kAXValueTypeAXError = 5};
CFTypeID AXValueGetTypeID(void);
AXValueRef _Nullable AXValueCreate(AXValueType type, const void* value) CF_RETURNS_RETAINED;
AXValueType AXValueGetType(AXValueRef value);
Boolean AXValueGetValue(AXValueRef value, AXValueType type, void* unboxed);

#ifdef __cplusplus
}
#endif
CF_ASSUME_NONNULL_END
