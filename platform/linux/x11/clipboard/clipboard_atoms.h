#pragma once

#include "platform/linux/x11/x11_connection.h"

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lomaris {

/// The numbers that the X server uses for names. Both directions are remembered, up to a bound: another program may
/// bring any number of names. Main thread; the connection must be usable.
class ClipboardAtoms {
public:
    /// `connection` outlives the atoms.
    explicit ClipboardAtoms(X11Connection& connection) : connection_(connection) {}

    /// The atom of a name; `XCB_ATOM_NONE` where the name is too long or the server is gone.
    [[nodiscard]] xcb_atom_t atom(std::string_view name);

    /// The atoms of several names, asked for together.
    [[nodiscard]] std::vector<xcb_atom_t> atoms(std::span<const std::string_view> names);

    /// The names of several atoms, asked for together; empty for an atom that does not exist or whose name is too long.
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
