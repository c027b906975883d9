#pragma once

#include <systemd/sd-bus.h>

namespace lomaris {

/// The functions of the D-Bus library that this platform calls, without their prefix.
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

// The library is loaded at the first use: a run that prints help, and a machine without the library, do without it. The
// table lives as long as the process. The members end in an underscore as one of the functions is called `new`.

#define LOMARIS_DECLARE(name) decltype(&::sd_bus_##name) name##_ = nullptr;
struct DBusFunctions {
    LOMARIS_DBUS_FUNCTIONS(LOMARIS_DECLARE)
};
#undef LOMARIS_DECLARE

/// The D-Bus library, or null where it is not installed or lacks a function. Main thread.
[[nodiscard]] const DBusFunctions* dbusFunctions();

}  // namespace lomaris
