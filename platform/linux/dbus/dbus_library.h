#pragma once

#include <systemd/sd-bus.h>

namespace lomaris {

/// The functions of libsystemd that this platform calls, without the prefix `sd_bus_`.
#define LOMARIS_DBUS_FUNCTIONS(X) \
    X(call_async)                 \
    X(close_unref)                \
    X(get_events)                 \
    X(get_fd)                     \
    X(is_ready)                   \
    X(message_append_basic)       \
    X(message_close_container)    \
    X(message_enter_container)    \
    X(message_exit_container)     \
    X(message_get_error)          \
    X(message_has_signature)      \
    X(message_new_method_call)    \
    X(message_open_container)     \
    X(message_peek_type)          \
    X(message_read_array)         \
    X(message_read_basic)         \
    X(message_ref)                \
    X(message_rewind)             \
    X(message_set_auto_start)     \
    X(message_unref)              \
    X(new)                        \
    X(process)                    \
    X(set_address)                \
    X(set_bus_client)             \
    X(slot_unref)                 \
    X(start)

// The library is opened at the first use, so that a run that only prints help does not load it and a machine without it
// can run the tool. The members end in an underscore because one of the functions is called `new`.

#define LOMARIS_DECLARE(name) decltype(&::sd_bus_##name) name##_ = nullptr;
struct DBusFunctions {
    LOMARIS_DBUS_FUNCTIONS(LOMARIS_DECLARE)
};
#undef LOMARIS_DECLARE

/// The functions of libsystemd. Null if it is not installed or lacks one of them. Static storage. Main thread.
[[nodiscard]] const DBusFunctions* dbusFunctions();

}  // namespace lomaris
