// The system's own header, and a configuration string that exists only on macOS.

#include_next <unistd.h>

#ifndef LOMARIS_MACOS_DECLARATIONS_UNISTD
#define LOMARIS_MACOS_DECLARATIONS_UNISTD

// The user's own directory for temporary files.
#define _CS_DARWIN_USER_TEMP_DIR 65537

#endif
