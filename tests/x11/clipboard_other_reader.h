#pragma once

#include "tests/x11/clipboard_peer.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace lomaris::test {

/// Another program that reads the clipboard. Each operation waits for the owner, which must be served meanwhile.
class OtherReader {
public:
    /// What the owner answers for a target, in however many pieces; nothing where it refused or did not answer.
    [[nodiscard]] std::optional<PropertyValue> read(const std::string& target);

    /// The same, for a request that carries this time.
    [[nodiscard]] std::optional<PropertyValue> readAt(const std::string& target, xcb_timestamp_t time);

    /// The names in the owner's list of targets, sorted.
    [[nodiscard]] std::vector<std::string> targets();

    /// Asks for several targets in one request.
    [[nodiscard]] std::vector<std::optional<PropertyValue>> readTogether(const std::vector<std::string>& targets);

    /// Asks for contents that come in pieces, takes that many, and then never another; whether it got them.
    [[nodiscard]] bool readSomePieces(const std::string& target, std::size_t count);

    /// Asks for contents and leaves the answer where it is; the property that holds it, or nothing.
    [[nodiscard]] std::optional<xcb_atom_t> ask(const std::string& target);

    [[nodiscard]] ClipboardPeer& peer() { return peer_; }

private:
    [[nodiscard]] std::optional<xcb_atom_t> request(xcb_atom_t target, xcb_atom_t property, xcb_timestamp_t time);
    [[nodiscard]] std::optional<PropertyValue> takeAnswer(xcb_atom_t property);
    [[nodiscard]] bool waitForNewValue(xcb_atom_t property);

    ClipboardPeer peer_;
};

}  // namespace lomaris::test
