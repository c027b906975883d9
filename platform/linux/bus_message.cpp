#include "platform/linux/bus_message.h"

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

/// The library hands a boolean over as an int.
std::optional<bool> readBool(sd_bus_message* message) {
    const auto value = readBasic<int>(message, SD_BUS_TYPE_BOOLEAN);
    return value ? std::optional(*value != 0) : std::nullopt;
}

/// The string stays the message's; the library has checked that it is UTF-8.
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
    if (!hasSignature("au")) {
        return std::nullopt;
    }
    const void* words = nullptr;
    std::size_t size = 0;
    if (bus().message_read_array_(message_.get(), SD_BUS_TYPE_UINT32, &words, &size) <= 0 || size < sizeof(uint32_t)) {
        return std::nullopt;
    }
    const auto* const word = static_cast<const std::uint32_t*>(words);
    const std::uint64_t high = size < 2 * sizeof(std::uint32_t) ? 0 : word[1];
    return high << 32U | word[0];
}

std::optional<ObjectReference> BusReply::readReference() const {
    return hasSignature("(so)") ? readObject(message_.get()) : std::nullopt;
}

std::optional<std::vector<ObjectReference>> BusReply::readReferences() const {
    if (!hasSignature("a(so)") || bus().message_enter_container_(message_.get(), SD_BUS_TYPE_ARRAY, "(so)") <= 0) {
        return std::nullopt;
    }
    std::vector<ObjectReference> references;
    int next = 0;
    while ((next = bus().message_peek_type_(message_.get(), nullptr, nullptr)) > 0) {
        auto reference = readObject(message_.get());
        if (!reference || references.size() == maximumListLength) {
            return std::nullopt;
        }
        references.push_back(std::move(*reference));
    }
    if (next < 0) {
        return std::nullopt;
    }
    return references;
}

std::optional<std::vector<std::string>> BusReply::readStrings() const {
    if (!hasSignature("as") || bus().message_enter_container_(message_.get(), SD_BUS_TYPE_ARRAY, "s") <= 0) {
        return std::nullopt;
    }
    std::vector<std::string> strings;
    int next = 0;
    while ((next = bus().message_peek_type_(message_.get(), nullptr, nullptr)) > 0) {
        auto string = readText(message_.get(), SD_BUS_TYPE_STRING);
        if (!string || strings.size() == maximumListLength) {
            return std::nullopt;
        }
        strings.push_back(std::move(*string));
    }
    if (next < 0) {
        return std::nullopt;
    }
    return strings;
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
