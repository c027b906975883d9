#pragma once

#include <xcb/sync.h>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>
#include <xcb/xfixes.h>

namespace lomaris {

/// The functions of libxcb that this platform calls, without the prefix `xcb_`.
#define LOMARIS_XCB_FUNCTIONS(X) \
    X(change_property)           \
    X(change_window_attributes)  \
    X(connect)                   \
    X(connection_has_error)      \
    X(convert_selection)         \
    X(create_window)             \
    X(destroy_window)            \
    X(disconnect)                \
    X(flush)                     \
    X(generate_id)               \
    X(get_atom_name)             \
    X(get_atom_name_name)        \
    X(get_atom_name_name_length) \
    X(get_extension_data)        \
    X(get_file_descriptor)       \
    X(get_input_focus)           \
    X(get_property)              \
    X(get_property_value)        \
    X(get_selection_owner)       \
    X(get_setup)                 \
    X(grab_server)               \
    X(intern_atom)               \
    X(poll_for_event)            \
    X(poll_for_queued_event)     \
    X(poll_for_reply)            \
    X(prefetch_extension_data)   \
    X(query_extension)           \
    X(query_keymap)              \
    X(query_pointer)             \
    X(query_tree)                \
    X(screen_next)               \
    X(send_event)                \
    X(send_request)              \
    X(set_selection_owner)       \
    X(setup_roots_iterator)      \
    X(ungrab_server)

/// The same for libxcb-sync.
#define LOMARIS_XCB_SYNC_FUNCTIONS(X) \
    X(initialize)                     \
    X(list_system_counters)           \
    X(query_counter)

/// The same for libxcb-xfixes.
#define LOMARIS_XCB_XFIXES_FUNCTIONS(X) \
    X(query_version)                    \
    X(select_selection_input)

// The libraries are opened at the first use, so that a run that only prints help does not load them and a machine
// without them can run the tool. They are never unloaded, which would not be safe.

#define LOMARIS_DECLARE(name) decltype(&::xcb_##name) name = nullptr;
struct XcbFunctions {
    LOMARIS_XCB_FUNCTIONS(LOMARIS_DECLARE)
};
#undef LOMARIS_DECLARE

#define LOMARIS_DECLARE(name) decltype(&::xcb_sync_##name) name = nullptr;
struct XcbSyncFunctions {
    LOMARIS_XCB_SYNC_FUNCTIONS(LOMARIS_DECLARE)
    xcb_extension_t* id = nullptr;
};
#undef LOMARIS_DECLARE

#define LOMARIS_DECLARE(name) decltype(&::xcb_xfixes_##name) name = nullptr;
struct XcbXfixesFunctions {
    LOMARIS_XCB_XFIXES_FUNCTIONS(LOMARIS_DECLARE)
    xcb_extension_t* id = nullptr;
};
#undef LOMARIS_DECLARE

/// The functions of libxcb. Null if it is not installed or lacks one of them. Static storage. Main thread.
[[nodiscard]] const XcbFunctions* xcbFunctions();

/// The same for libxcb-sync.
[[nodiscard]] const XcbSyncFunctions* xcbSyncFunctions();

/// The same for libxcb-xfixes.
[[nodiscard]] const XcbXfixesFunctions* xcbXfixesFunctions();

}  // namespace lomaris
