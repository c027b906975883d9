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

/// A message of the bus, owned.
using BusMessage = std::unique_ptr<sd_bus_message, BusMessageDeleter>;

/// An object of a peer on the bus.
struct ObjectReference {
    /// Unique name of the peer (":1.5").
    std::string name;
    std::string path;

    friend bool operator==(const ObjectReference&, const ObjectReference&) = default;
};

/// What an object says of itself in the list of all objects of its application.
struct ListedObject {
    ObjectReference object;
    ObjectReference parent;
    /// Negative where the application does not count them.
    std::int32_t childCount = 0;
    std::vector<std::string> interfaces;
    std::uint32_t role = 0;
    /// As `BusReply::readBits` reads them.
    std::uint64_t states = 0;
};

/// The most members that any list in a reply may have; a longer one is nonsense or nothing that a walk could use.
inline constexpr std::size_t maximumListLength = 10000;

/// The answer to one call: values, an error of the peer, or no answer at all. Each reader answers nothing unless the
/// reply consists of exactly the kind of value asked for; only one reader is called per reply, once, unless the reply
/// is rewound in between.
class BusReply {
public:
    /// `message` is a reply of any kind, owned by the result.
    explicit BusReply(BusMessage message);

    /// A call that no reply came for.
    explicit BusReply(AXError error) : error_(error) {}

    /// `success` for values, else the code that the missing answer or the error of the peer stands for.
    [[nodiscard]] AXError error() const { return error_; }

    /// The error that the peer answered, or nothing.
    [[nodiscard]] std::optional<BusFailure> failure() const { return failure_; }

    /// Lets the reply be read once more.
    void rewind() const;

    [[nodiscard]] std::optional<bool> readBoolean() const;
    [[nodiscard]] std::optional<std::int32_t> readInteger() const;
    [[nodiscard]] std::optional<std::pair<std::int32_t, std::int32_t>> readIntegerPair() const;
    [[nodiscard]] std::optional<std::uint32_t> readUnsigned() const;
    /// Well-formed UTF-8.
    [[nodiscard]] std::optional<std::string> readString() const;
    /// A bit set in words of 32 bits, lowest first; only the first two words count.
    [[nodiscard]] std::optional<std::uint64_t> readBits() const;
    /// One object; an empty name stands for nothing to read.
    [[nodiscard]] std::optional<ObjectReference> readReference() const;
    [[nodiscard]] std::optional<std::vector<ObjectReference>> readReferences() const;
    [[nodiscard]] std::optional<std::vector<std::string>> readStrings() const;
    [[nodiscard]] std::optional<std::vector<ListedObject>> readListedObjects() const;

    /// The readers of a property: a variant around the value.
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
