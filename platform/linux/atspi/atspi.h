#pragma once

#include "platform/linux/dbus/bus_message.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

/// Interface names, object paths and state numbers of AT-SPI.
namespace lomaris::atspi {

inline constexpr const char* accessible = "org.a11y.atspi.Accessible";
inline constexpr const char* action = "org.a11y.atspi.Action";
inline constexpr const char* cache = "org.a11y.atspi.Cache";
inline constexpr const char* application = "org.a11y.atspi.Application";
inline constexpr const char* component = "org.a11y.atspi.Component";
inline constexpr const char* collection = "org.a11y.atspi.Collection";
inline constexpr const char* editableText = "org.a11y.atspi.EditableText";
inline constexpr const char* text = "org.a11y.atspi.Text";
inline constexpr const char* value = "org.a11y.atspi.Value";

/// The path of the root object of every application, and of the registry's root object, whose children are those roots.
inline constexpr const char* rootPath = "/org/a11y/atspi/accessible/root";
/// The path of the object that implements `cache`, in applications that have it.
inline constexpr const char* cachePath = "/org/a11y/atspi/cache";
/// The path of a null reference.
inline constexpr const char* nullPath = "/org/a11y/atspi/null";
inline constexpr const char* registryName = "org.a11y.atspi.Registry";

/// AT-SPI states. The value is the number of the bit in `States`.
enum class State : unsigned {
    active = 1,
    defunct = 6,
    editable = 7,
    enabled = 8,
    focusable = 11,
    focused = 12,
    multiLine = 17,
    sensitive = 24,
    showing = 25,
    visible = 30,
    managesDescendants = 31,
    readOnly = 43,
};

/// The set of states of an object.
class States {
public:
    explicit constexpr States(std::uint64_t bits) : bits_(bits) {}

    [[nodiscard]] static constexpr States of(std::initializer_list<State> states) {
        std::uint64_t bits = 0;
        for (const State state : states) {
            bits |= std::uint64_t{1} << static_cast<unsigned>(state);
        }
        return States(bits);
    }

    [[nodiscard]] constexpr std::uint64_t bits() const { return bits_; }

    [[nodiscard]] constexpr bool has(State state) const { return (bits_ >> static_cast<unsigned>(state) & 1U) != 0; }

private:
    std::uint64_t bits_;
};

/// True if `interfaces`, the list of an object, contains `interface`.
[[nodiscard]] inline bool isAmong(const std::vector<std::string>& interfaces, const char* interface) {
    return std::find(interfaces.begin(), interfaces.end(), interface) != interfaces.end();
}

/// Completes a reference sent by `peer`: some toolkits leave out their own bus name. nullopt for a null reference.
[[nodiscard]] inline std::optional<ObjectReference> resolved(ObjectReference reference, const std::string& peer) {
    if (reference.path.empty() || reference.path == nullPath) {
        return std::nullopt;
    }
    if (reference.name.empty()) {
        reference.name = peer;
    }
    return reference;
}

}  // namespace lomaris::atspi
