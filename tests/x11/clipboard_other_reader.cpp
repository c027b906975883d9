#include "tests/x11/clipboard_other_reader.h"

#include <algorithm>

namespace lomaris::test {

std::optional<xcb_atom_t> OtherReader::request(xcb_atom_t target, xcb_atom_t property, xcb_timestamp_t time) {
    xcb_convert_selection(peer_.handle(), peer_.window(), peer_.atom("CLIPBOARD"), target, property, time);
    const PeerEvent event = peer_.waitFor([target](const xcb_generic_event_t& candidate) {
        return (candidate.response_type & 0x7F) == XCB_SELECTION_NOTIFY &&
               reinterpret_cast<const xcb_selection_notify_event_t&>(candidate).target == target;
    });
    if (!event) {
        return std::nullopt;
    }
    const xcb_atom_t answered = reinterpret_cast<const xcb_selection_notify_event_t&>(*event).property;
    return answered == XCB_ATOM_NONE ? std::nullopt : std::optional(answered);
}

bool OtherReader::waitForNewValue(xcb_atom_t property) {
    return peer_.waitFor([property](const xcb_generic_event_t& candidate) {
        if (candidate.response_type != XCB_PROPERTY_NOTIFY) {
            return false;
        }
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(candidate);
        return change.atom == property && change.state == XCB_PROPERTY_NEW_VALUE;
    }) != nullptr;
}

std::optional<PropertyValue> OtherReader::takeAnswer(xcb_atom_t property) {
    PropertyValue value = peer_.takeProperty(property);
    if (value.type.empty()) {
        return std::nullopt;
    }
    if (value.type != "INCR") {
        return value;
    }
    PropertyValue whole;
    for (;;) {
        if (!waitForNewValue(property)) {
            return std::nullopt;
        }
        const PropertyValue piece = peer_.takeProperty(property);
        whole.type = piece.type;
        whole.format = piece.format;
        whole.bytes += piece.bytes;
        if (piece.bytes.empty()) {
            return whole;
        }
    }
}

std::optional<PropertyValue> OtherReader::read(const std::string& target) { return readAt(target, peer_.time()); }

std::optional<xcb_atom_t> OtherReader::ask(const std::string& target) {
    return request(peer_.atom(target), peer_.atom("TEST_PASTE"), peer_.time());
}

std::optional<PropertyValue> OtherReader::readAt(const std::string& target, xcb_timestamp_t time) {
    const auto property = request(peer_.atom(target), peer_.atom("TEST_PASTE"), time);
    return property ? takeAnswer(*property) : std::nullopt;
}

std::vector<std::string> OtherReader::targets() {
    const auto list = read("TARGETS");
    std::vector<std::string> names = list ? peer_.namesInList(list->bytes) : std::vector<std::string>{"no answer"};
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::optional<PropertyValue>> OtherReader::readTogether(const std::vector<std::string>& targets) {
    std::vector<std::string> pairs;
    for (const std::string& target : targets) {
        pairs.push_back(target);
        pairs.push_back("TEST_PASTE_" + std::to_string(pairs.size()));
    }
    const xcb_atom_t property = peer_.atom("TEST_PAIRS");
    peer_.setProperty(peer_.window(), property, {"ATOM_PAIR", 32, peer_.atomList(pairs)});
    std::vector<std::optional<PropertyValue>> values;
    if (!request(peer_.atom("MULTIPLE"), property, peer_.time())) {
        return values;
    }
    const std::vector<std::string> answered = peer_.namesInList(peer_.takeProperty(property).bytes);
    for (std::size_t index = 1; index < answered.size(); index += 2) {
        values.push_back(answered[index].empty() ? std::nullopt : takeAnswer(peer_.atom(answered[index])));
    }
    return values;
}

bool OtherReader::readSomePieces(const std::string& target, std::size_t count) {
    const auto property = ask(target);
    if (!property || peer_.takeProperty(*property).type != "INCR") {
        return false;
    }
    for (std::size_t taken = 0; taken < count; ++taken) {
        if (!waitForNewValue(*property) || peer_.takeProperty(*property).bytes.empty()) {
            return false;
        }
    }
    return true;
}

}  // namespace lomaris::test
