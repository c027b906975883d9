#pragma once

// Declarations of the part of the Objective-C runtime that this project uses; see CoreFoundation/CFBase.h.

// Truth values: a type of their own on Apple silicon, a number on Intel. What is written must do for both.
#if defined(LOMARIS_CHECK_FOR_INTEL)
typedef signed char BOOL;
#else
typedef bool BOOL;
#endif
#define YES __objc_yes
#define NO __objc_no

// The object that is none.
#define nil nullptr
