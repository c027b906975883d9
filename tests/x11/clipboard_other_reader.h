#pragma once

#include "tests/x11/clipboard_peer.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace lomaris::test {

/// Another program that reads the clipboard. Each operation blocks until the owner replies, which must therefore run on
/// another thread or in another process.
class OtherReader {
public:
    /// Reads a target, also with INCR. nullopt if the owner refused or did not reply.
    [[nodiscard]] std::optional<PropertyValue> read(const std::string& target);

    /// The same, with this timestamp in the request.
    [[nodiscard]] std::optional<PropertyValue> readAt(const std::string& target, xcb_timestamp_t time);

    /// The names in the owner's list of targets, sorted.
    [[nodiscard]] std::vector<std::string> targets();

    /// Reads several targets with one MULTIPLE request.
    [[nodiscard]] std::vector<std::optional<PropertyValue>> readTogether(const std::vector<std::string>& targets);

    /// Requests a target that is sent with INCR, takes `count` pieces, and no more. Returns true if it got them.
    [[nodiscard]] bool readSomePieces(const std::string& target, std::size_t count);

    /// Requests a target and does not read the reply. Returns the property with the reply; nullopt if there is none.
    [[nodiscard]] std::optional<xcb_atom_t> ask(const std::string& target);

    [[nodiscard]] ClipboardPeer& peer() { return peer_; }

private:
    [[nodiscard]] std::optional<xcb_atom_t> request(xcb_atom_t target, xcb_atom_t property, xcb_timestamp_t time);
    [[nodiscard]] std::optional<PropertyValue> takeAnswer(xcb_atom_t property);
    [[nodiscard]] bool waitForNewValue(xcb_atom_t property);

    ClipboardPeer peer_;
};

}  // namespace lomaris::test
