#pragma once

// Declarations of the part of the Objective-C runtime that this project uses; see CoreFoundation/CFBase.h.

// Booleans: a type of their own on Apple silicon, an integer on Intel. The sources must compile with both.
#if defined(LOMARIS_CHECK_FOR_INTEL)
typedef signed char BOOL;
#else
typedef bool BOOL;
#endif
#define YES __objc_yes
#define NO __objc_no

// The null object reference.
#define nil nullptr
