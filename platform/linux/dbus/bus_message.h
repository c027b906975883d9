#pragma once

#include "platform/ax_error.h"
#include "platform/linux/dbus/bus_error.h"
#include "platform/linux/dbus/dbus_library.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lomaris {

struct BusMessageDeleter {
    void operator()(sd_bus_message* message) const;
};

/// A D-Bus message. Holds one reference to it.
using BusMessage = std::unique_ptr<sd_bus_message, BusMessageDeleter>;

/// An object of a peer.
struct ObjectReference {
    /// The unique bus name of the peer (":1.5"), or the well-known name of a service.
    std::string name;
    /// The object path.
    std::string path;

    friend bool operator==(const ObjectReference&, const ObjectReference&) = default;
};

/// One item of a reply with the signature `a((so)(so)(so)iiassusau)`: the data of one object in the list of all objects
/// of its application.
struct ListedObject {
    ObjectReference object;
    ObjectReference parent;
    /// Negative if the application does not count them.
    std::int32_t childCount = 0;
    std::vector<std::string> interfaces;
    std::uint32_t role = 0;
    /// As `BusReply::readBits` reads them.
    std::uint64_t states = 0;
};

/// The most members that any array in a reply may have. A longer array counts as malformed.
inline constexpr std::size_t maximumListLength = 10000;

/// The outcome of one call: a reply with values, an error reply, or no reply.
///
/// Each reader returns nullopt unless the reply has exactly the signature of its type. A reader consumes the reply:
/// call one reader, once, or call `rewind` in between.
class BusReply {
public:
    /// `message` is a method return or an error reply.
    explicit BusReply(BusMessage message);

    /// A call that got no reply; `error` says why.
    explicit BusReply(AXError error) : error_(error) {}

    /// `success` if the reply has values, otherwise the code for the error reply or the missing reply.
    [[nodiscard]] AXError error() const { return error_; }

    /// The failure that the error reply means. nullopt if there is no error reply.
    [[nodiscard]] std::optional<BusFailure> failure() const { return failure_; }

    /// Moves the read position back to the start of the reply.
    void rewind() const;

    [[nodiscard]] std::optional<bool> readBoolean() const;
    [[nodiscard]] std::optional<std::int32_t> readInteger() const;
    [[nodiscard]] std::optional<std::pair<std::int32_t, std::int32_t>> readIntegerPair() const;
    [[nodiscard]] std::optional<std::uint32_t> readUnsigned() const;
    /// Well-formed UTF-8.
    [[nodiscard]] std::optional<std::string> readString() const;
    /// A set of bits in 32-bit words, lowest word first. Words after the second are ignored.
    [[nodiscard]] std::optional<std::uint64_t> readBits() const;
    /// One object reference. Name and path are returned as the peer sent them, also if they are empty.
    [[nodiscard]] std::optional<ObjectReference> readReference() const;
    [[nodiscard]] std::optional<std::vector<ObjectReference>> readReferences() const;
    [[nodiscard]] std::optional<std::vector<std::string>> readStrings() const;
    [[nodiscard]] std::optional<std::vector<ListedObject>> readListedObjects() const;

    // Readers for the reply to `Properties.Get`: one variant around the value.

    [[nodiscard]] std::optional<bool> readBooleanProperty() const;
    [[nodiscard]] std::optional<std::int32_t> readIntegerProperty() const;
    [[nodiscard]] std::optional<double> readNumberProperty() const;
    [[nodiscard]] std::optional<std::string> readStringProperty() const;
    [[nodiscard]] std::optional<ObjectReference> readReferenceProperty() const;

private:
    [[nodiscard]] bool hasSignature(const char* signature) const;
    [[nodiscard]] bool enterVariant(const char* contents) const;

    BusMessage message_;
    AXError error_ = AXError::success;
    std::optional<BusFailure> failure_;
};

}  // namespace lomaris
