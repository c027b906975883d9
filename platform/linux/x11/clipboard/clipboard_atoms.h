#pragma once

#include "platform/linux/x11/x11_connection.h"

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lomaris {

/// Converts between atoms and their names, with a cache for both directions. The cache has a size limit, as other
/// programs may use any number of names. Main thread. The connection must be usable.
class ClipboardAtoms {
public:
    /// `connection` must outlive this object.
    explicit ClipboardAtoms(X11Connection& connection) : connection_(connection) {}

    /// The atom with this name. `XCB_ATOM_NONE` if the name is longer than `longestTargetName` or the server is gone.
    [[nodiscard]] xcb_atom_t atom(std::string_view name);

    /// The atoms of several names, in the same order. Requests them in batches.
    [[nodiscard]] std::vector<xcb_atom_t> atoms(std::span<const std::string_view> names);

    /// The names of several atoms, in the same order. Empty for an atom that does not exist or whose name is too long.
    /// Requests them in batches.
    [[nodiscard]] std::vector<std::string> names(std::span<const xcb_atom_t> atoms);

private:
    void fetchAtoms(std::span<const std::string_view> names);
    void fetchNames(std::span<const xcb_atom_t> atoms);
    void makeRoomFor(std::size_t count);
    void remember(std::string_view name, xcb_atom_t atom);

    X11Connection& connection_;
    std::unordered_map<std::string, xcb_atom_t> atoms_;
    std::unordered_map<xcb_atom_t, std::string> names_;
};

}  // namespace lomaris
