// The time of the system that checks, which includes its header in parts, and the clock that only macOS has.

#include_next <time.h>

#ifndef LOMARIS_MACOS_DECLARATIONS_TIME
#define LOMARIS_MACOS_DECLARATIONS_TIME

#include <stdint.h>

// Nanoseconds of a clock: the one that counts while the machine is awake.
#define CLOCK_UPTIME_RAW 8
#ifdef __cplusplus
extern "C"
#endif
    uint64_t
    clock_gettime_nsec_np(clockid_t clock);

#endif
