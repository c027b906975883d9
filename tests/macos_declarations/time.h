// The system's own header, which may be included several times, and a clock that exists only on macOS.

#include_next <time.h>

#ifndef LOMARIS_MACOS_DECLARATIONS_TIME
#define LOMARIS_MACOS_DECLARATIONS_TIME

#include <stdint.h>

// The time of a clock in nanoseconds; this clock counts while the machine is awake.
#define CLOCK_UPTIME_RAW 8
#ifdef __cplusplus
extern "C"
#endif
    uint64_t
    clock_gettime_nsec_np(clockid_t clock);

#endif
