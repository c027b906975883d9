#include "platform/linux/atspi/collection_match.h"

#include <cstdint>
#include <utility>

namespace lomaris::atspi {

namespace {

constexpr std::int32_t matchAll = 1;
constexpr std::uint32_t canonicalOrder = 1;

const DBusFunctions& bus() { return *dbusFunctions(); }

/// Appends to a message. `isGood` is false after the first error.
class Appender {
public:
    explicit Appender(sd_bus_message* message) : message_(message) {}

    void integer(std::int32_t value) { note(bus().message_append_basic_(message_, SD_BUS_TYPE_INT32, &value)); }
    void unsignedInteger(std::uint32_t value) {
        note(bus().message_append_basic_(message_, SD_BUS_TYPE_UINT32, &value));
    }
    void boolean(bool value) {
        const int number = value ? 1 : 0;
        note(bus().message_append_basic_(message_, SD_BUS_TYPE_BOOLEAN, &number));
    }
    void open(char type, const char* contents) { note(bus().message_open_container_(message_, type, contents)); }
    void close() { note(bus().message_close_container_(message_)); }

    void emptyArray(const char* contents) {
        open(SD_BUS_TYPE_ARRAY, contents);
        close();
    }

    [[nodiscard]] bool isGood() const { return isGood_; }

private:
    void note(int result) { isGood_ = isGood_ && result >= 0; }

    sd_bus_message* message_;
    bool isGood_ = true;
};

/// Appends a match rule: the states, then empty lists of attributes, roles and interfaces, each with its match type.
void appendRule(Appender& append, States wanted) {
    append.open(SD_BUS_TYPE_STRUCT, "aiia{ss}iaiiasib");
    append.open(SD_BUS_TYPE_ARRAY, "i");
    append.integer(static_cast<std::int32_t>(static_cast<std::uint32_t>(wanted.bits())));
    append.integer(static_cast<std::int32_t>(static_cast<std::uint32_t>(wanted.bits() >> 32U)));
    append.close();
    append.integer(matchAll);
    append.emptyArray("{ss}");
    append.integer(matchAll);
    append.emptyArray("i");
    append.integer(matchAll);
    append.emptyArray("s");
    append.integer(matchAll);
    append.boolean(false);
    append.close();
}

}  // namespace

BusMessage newGetMatches(BusConnection& connection, const ObjectReference& object, States wanted) {
    BusMessage message = connection.newCall(object, collection, "GetMatches");
    if (message == nullptr) {
        return nullptr;
    }
    Appender append(message.get());
    appendRule(append, wanted);
    append.unsignedInteger(canonicalOrder);
    // Limit the number of matches to 1: with 0 ("no limit"), GTK returns none.
    append.integer(1);
    append.boolean(true);
    return append.isGood() ? std::move(message) : nullptr;
}

}  // namespace lomaris::atspi
