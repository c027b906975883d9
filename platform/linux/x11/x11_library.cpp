#include "platform/linux/x11/x11_library.h"

#include <dlfcn.h>

#include <optional>

namespace lomaris {

namespace {

/// Stores the address of `symbol` in `target`. Returns false if the library has no such symbol.
template <typename Pointer>
bool load(void* library, const char* symbol, Pointer& target) {
    target = reinterpret_cast<Pointer>(dlsym(library, symbol));
    return target != nullptr;
}

void* openLibrary(const char* name) { return dlopen(name, RTLD_LAZY | RTLD_LOCAL); }

#define LOMARIS_LOAD(name) loaded = load(library, "xcb_" #name, functions.name) && loaded;
std::optional<XcbFunctions> loadXcb() {
    void* const library = openLibrary("libxcb.so.1");
    if (library == nullptr) {
        return std::nullopt;
    }
    XcbFunctions functions;
    bool loaded = true;
    LOMARIS_XCB_FUNCTIONS(LOMARIS_LOAD)
    return loaded ? std::optional(functions) : std::nullopt;
}
#undef LOMARIS_LOAD

#define LOMARIS_LOAD(name) loaded = load(library, "xcb_sync_" #name, functions.name) && loaded;
std::optional<XcbSyncFunctions> loadXcbSync() {
    void* const library = openLibrary("libxcb-sync.so.1");
    if (library == nullptr) {
        return std::nullopt;
    }
    XcbSyncFunctions functions;
    bool loaded = true;
    LOMARIS_XCB_SYNC_FUNCTIONS(LOMARIS_LOAD)
    LOMARIS_LOAD(id)
    return loaded ? std::optional(functions) : std::nullopt;
}
#undef LOMARIS_LOAD

#define LOMARIS_LOAD(name) loaded = load(library, "xcb_xfixes_" #name, functions.name) && loaded;
std::optional<XcbXfixesFunctions> loadXcbXfixes() {
    void* const library = openLibrary("libxcb-xfixes.so.0");
    if (library == nullptr) {
        return std::nullopt;
    }
    XcbXfixesFunctions functions;
    bool loaded = true;
    LOMARIS_XCB_XFIXES_FUNCTIONS(LOMARIS_LOAD)
    LOMARIS_LOAD(id)
    return loaded ? std::optional(functions) : std::nullopt;
}
#undef LOMARIS_LOAD

}  // namespace

const XcbFunctions* xcbFunctions() {
    static const std::optional<XcbFunctions> functions = loadXcb();
    return functions ? &*functions : nullptr;
}

const XcbSyncFunctions* xcbSyncFunctions() {
    static const std::optional<XcbSyncFunctions> functions = loadXcbSync();
    return functions ? &*functions : nullptr;
}

const XcbXfixesFunctions* xcbXfixesFunctions() {
    static const std::optional<XcbXfixesFunctions> functions = loadXcbXfixes();
    return functions ? &*functions : nullptr;
}

}  // namespace lomaris
