#pragma once

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <xcb/xcb.h>

namespace lomaris::test {

struct FreeEvent {
    void operator()(void* memory) const { std::free(memory); }
};

/// An event of the X server; null if there was none.
using PeerEvent = std::unique_ptr<xcb_generic_event_t, FreeEvent>;

/// The value of a property. An empty type means the name of the target.
struct PropertyValue {
    std::string type;
    std::uint8_t format = 8;
    std::string bytes;

    friend bool operator==(const PropertyValue&, const PropertyValue&) = default;
};

/// Another program that uses the clipboard, with its own connection and window. The constructor throws if there is no X
/// server. One thread at a time.
class ClipboardPeer {
public:
    ClipboardPeer();
    ClipboardPeer(const ClipboardPeer&) = delete;
    ClipboardPeer& operator=(const ClipboardPeer&) = delete;
    ~ClipboardPeer();

    [[nodiscard]] xcb_connection_t* handle() const { return connection_; }
    [[nodiscard]] xcb_window_t window() const { return window_; }
    [[nodiscard]] int descriptor() const { return xcb_get_file_descriptor(connection_); }

    [[nodiscard]] xcb_atom_t atom(const std::string& name);
    [[nodiscard]] std::string name(xcb_atom_t atom);
    [[nodiscard]] std::string atomList(const std::vector<std::string>& names);
    [[nodiscard]] std::vector<std::string> namesInList(const std::string& list);

    /// The current server time.
    [[nodiscard]] xcb_timestamp_t time();

    /// The owner of the clipboard.
    [[nodiscard]] xcb_window_t owner();

    void setProperty(xcb_window_t window, xcb_atom_t property, const PropertyValue& value);

    /// Reads and deletes a property of its own window.
    [[nodiscard]] PropertyValue takeProperty(xcb_atom_t property);

    /// Blocks until the server has processed all requests so far.
    void settle();

    /// Blocks until there is an event for which `isWanted` returns true; drops all others. Null after a long timeout.
    [[nodiscard]] PeerEvent waitFor(const std::function<bool(const xcb_generic_event_t&)>& isWanted);

private:
    xcb_connection_t* connection_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
};

}  // namespace lomaris::test
