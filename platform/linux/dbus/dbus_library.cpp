#include "platform/linux/dbus/dbus_library.h"

#include <dlfcn.h>

#include <optional>

namespace lomaris {

namespace {

constexpr const char* libraryName = "libsystemd.so.0";

/// Stores the address of `symbol` in `target`. Returns false if the library has no such symbol.
template <typename Pointer>
bool load(void* library, const char* symbol, Pointer& target) {
    target = reinterpret_cast<Pointer>(dlsym(library, symbol));
    return target != nullptr;
}

#define LOMARIS_LOAD(name) loaded = load(library, "sd_bus_" #name, functions.name##_) && loaded;
std::optional<DBusFunctions> loadLibrary() {
    void* const library = dlopen(libraryName, RTLD_LAZY | RTLD_LOCAL);
    if (library == nullptr) {
        return std::nullopt;
    }
    DBusFunctions functions;
    bool loaded = true;
    LOMARIS_DBUS_FUNCTIONS(LOMARIS_LOAD)
    return loaded ? std::optional(functions) : std::nullopt;
}
#undef LOMARIS_LOAD

}  // namespace

const DBusFunctions* dbusFunctions() {
    static const std::optional<DBusFunctions> functions = loadLibrary();
    return functions ? &*functions : nullptr;
}

}  // namespace lomaris
