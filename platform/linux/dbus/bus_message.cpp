#include "platform/linux/dbus/bus_message.h"

#include <array>
#include <cstddef>

namespace lomaris {

namespace {

const DBusFunctions& bus() { return *dbusFunctions(); }

template <typename Value>
std::optional<Value> readBasic(sd_bus_message* message, char type) {
    Value value{};
    if (bus().message_read_basic_(message, type, &value) <= 0) {
        return std::nullopt;
    }
    return value;
}

/// libsystemd returns a boolean as an int.
std::optional<bool> readBool(sd_bus_message* message) {
    const auto value = readBasic<int>(message, SD_BUS_TYPE_BOOLEAN);
    return value ? std::optional(*value != 0) : std::nullopt;
}

/// Copies the string, which the message owns. libsystemd has checked that it is well-formed UTF-8.
std::optional<std::string> readText(sd_bus_message* message, char type) {
    const auto value = readBasic<const char*>(message, type);
    return value ? std::optional<std::string>(*value) : std::nullopt;
}

std::optional<ObjectReference> readObject(sd_bus_message* message) {
    if (bus().message_enter_container_(message, SD_BUS_TYPE_STRUCT, "so") <= 0) {
        return std::nullopt;
    }
    auto name = readText(message, SD_BUS_TYPE_STRING);
    auto path = readText(message, SD_BUS_TYPE_OBJECT_PATH);
    if (!name || !path || bus().message_exit_container_(message) < 0) {
        return std::nullopt;
    }
    return ObjectReference{std::move(*name), std::move(*path)};
}

/// The members of an array of `contents`, each read by `readMember`.
template <typename Member, typename Reader>
std::optional<std::vector<Member>> readArray(sd_bus_message* message, const char* contents, Reader readMember) {
    if (bus().message_enter_container_(message, SD_BUS_TYPE_ARRAY, contents) <= 0) {
        return std::nullopt;
    }
    std::vector<Member> members;
    int next = 0;
    while ((next = bus().message_peek_type_(message, nullptr, nullptr)) > 0) {
        auto member = readMember(message);
        if (!member || members.size() == maximumListLength) {
            return std::nullopt;
        }
        members.push_back(std::move(*member));
    }
    if (next < 0 || bus().message_exit_container_(message) < 0) {
        return std::nullopt;
    }
    return members;
}

std::optional<std::vector<std::string>> readTexts(sd_bus_message* message) {
    return readArray<std::string>(message, "s",
                                  [](sd_bus_message* each) { return readText(each, SD_BUS_TYPE_STRING); });
}

std::optional<std::uint64_t> readBitSet(sd_bus_message* message) {
    const void* words = nullptr;
    std::size_t size = 0;
    if (bus().message_read_array_(message, SD_BUS_TYPE_UINT32, &words, &size) <= 0 || size < sizeof(uint32_t)) {
        return std::nullopt;
    }
    const auto* const word = static_cast<const std::uint32_t*>(words);
    const std::uint64_t high = size < 2 * sizeof(std::uint32_t) ? 0 : word[1];
    return high << 32U | word[0];
}

constexpr const char* listedObjectMembers = "(so)(so)(so)iiassusau";
constexpr const char* listedObject = "((so)(so)(so)iiassusau)";
constexpr const char* listedObjectArray = "a((so)(so)(so)iiassusau)";

/// Reads the fields in the order of the signature; skips the application, the index, the name and the description.
std::optional<ListedObject> readListedObject(sd_bus_message* message) {
    if (bus().message_enter_container_(message, SD_BUS_TYPE_STRUCT, listedObjectMembers) <= 0) {
        return std::nullopt;
    }
    auto object = readObject(message);
    const auto application = readObject(message);
    auto parent = readObject(message);
    const auto index = readBasic<std::int32_t>(message, SD_BUS_TYPE_INT32);
    const auto childCount = readBasic<std::int32_t>(message, SD_BUS_TYPE_INT32);
    auto interfaces = readTexts(message);
    const auto name = readBasic<const char*>(message, SD_BUS_TYPE_STRING);
    const auto role = readBasic<std::uint32_t>(message, SD_BUS_TYPE_UINT32);
    const auto description = readBasic<const char*>(message, SD_BUS_TYPE_STRING);
    const auto states = readBitSet(message);
    const bool isWhole =
        object && application && parent && index && childCount && interfaces && name && role && description && states;
    if (!isWhole || bus().message_exit_container_(message) < 0) {
        return std::nullopt;
    }
    return ListedObject{std::move(*object), std::move(*parent), *childCount, std::move(*interfaces), *role, *states};
}

}  // namespace

void BusMessageDeleter::operator()(sd_bus_message* message) const { bus().message_unref_(message); }

BusReply::BusReply(BusMessage message) : message_(std::move(message)) {
    const sd_bus_error* const error = bus().message_get_error_(message_.get());
    if (error != nullptr) {
        failure_ = busFailureFromName(error->name == nullptr ? "" : error->name);
        error_ = axErrorOf(*failure_);
    }
}

bool BusReply::hasSignature(const char* signature) const {
    return error_ == AXError::success && message_ != nullptr &&
           bus().message_has_signature_(message_.get(), signature) > 0;
}

bool BusReply::enterVariant(const char* contents) const {
    return hasSignature("v") && bus().message_enter_container_(message_.get(), SD_BUS_TYPE_VARIANT, contents) > 0;
}

void BusReply::rewind() const {
    if (message_ != nullptr) {
        bus().message_rewind_(message_.get(), 1);
    }
}

std::optional<bool> BusReply::readBoolean() const {
    return hasSignature("b") ? readBool(message_.get()) : std::nullopt;
}

std::optional<std::int32_t> BusReply::readInteger() const {
    return hasSignature("i") ? readBasic<std::int32_t>(message_.get(), SD_BUS_TYPE_INT32) : std::nullopt;
}

std::optional<std::pair<std::int32_t, std::int32_t>> BusReply::readIntegerPair() const {
    if (!hasSignature("ii")) {
        return std::nullopt;
    }
    const auto first = readBasic<std::int32_t>(message_.get(), SD_BUS_TYPE_INT32);
    const auto second = readBasic<std::int32_t>(message_.get(), SD_BUS_TYPE_INT32);
    return first && second ? std::optional(std::pair(*first, *second)) : std::nullopt;
}

std::optional<std::uint32_t> BusReply::readUnsigned() const {
    return hasSignature("u") ? readBasic<std::uint32_t>(message_.get(), SD_BUS_TYPE_UINT32) : std::nullopt;
}

std::optional<std::string> BusReply::readString() const {
    return hasSignature("s") ? readText(message_.get(), SD_BUS_TYPE_STRING) : std::nullopt;
}

std::optional<std::uint64_t> BusReply::readBits() const {
    return hasSignature("au") ? readBitSet(message_.get()) : std::nullopt;
}

std::optional<ObjectReference> BusReply::readReference() const {
    return hasSignature("(so)") ? readObject(message_.get()) : std::nullopt;
}

std::optional<std::vector<ObjectReference>> BusReply::readReferences() const {
    return hasSignature("a(so)") ? readArray<ObjectReference>(message_.get(), "(so)", &readObject) : std::nullopt;
}

std::optional<std::vector<std::string>> BusReply::readStrings() const {
    return hasSignature("as") ? readTexts(message_.get()) : std::nullopt;
}

std::optional<std::vector<ListedObject>> BusReply::readListedObjects() const {
    return hasSignature(listedObjectArray) ? readArray<ListedObject>(message_.get(), listedObject, &readListedObject)
                                           : std::nullopt;
}

std::optional<bool> BusReply::readBooleanProperty() const {
    return enterVariant("b") ? readBool(message_.get()) : std::nullopt;
}

std::optional<std::int32_t> BusReply::readIntegerProperty() const {
    return enterVariant("i") ? readBasic<std::int32_t>(message_.get(), SD_BUS_TYPE_INT32) : std::nullopt;
}

std::optional<double> BusReply::readNumberProperty() const {
    return enterVariant("d") ? readBasic<double>(message_.get(), SD_BUS_TYPE_DOUBLE) : std::nullopt;
}

std::optional<std::string> BusReply::readStringProperty() const {
    return enterVariant("s") ? readText(message_.get(), SD_BUS_TYPE_STRING) : std::nullopt;
}

std::optional<ObjectReference> BusReply::readReferenceProperty() const {
    return enterVariant("(so)") ? readObject(message_.get()) : std::nullopt;
}

}  // namespace lomaris
