#include "platform/simulated/text_behaviour.h"

#include "platform/attributes.h"

#include <cstddef>
#include <cstdint>
#include <variant>

namespace lomaris::simulated {
namespace {

std::size_t offset(std::int64_t number) { return static_cast<std::size_t>(number); }

std::int64_t lengthOf(TextView text) { return static_cast<std::int64_t>(text.size()); }

}  // namespace

bool isInside(TextRange range, TextView text) {
    return range.location >= 0 && range.length >= 0 && range.location <= lengthOf(text) &&
           range.length <= lengthOf(text) - range.location;
}

AttributeAnswer readText(const TextState& state, std::string_view attribute) {
    const TextRange selection = state.selection;
    if (attribute == attribute::role) {
        return {AXError::success, Text(u"AXTextArea")};
    }
    if (attribute == attribute::value) {
        return {AXError::success, state.text};
    }
    if (attribute == attribute::selectedText) {
        return {AXError::success, state.text.substr(offset(selection.location), offset(selection.length))};
    }
    if (attribute == attribute::selectedTextRange) {
        return {AXError::success, selection};
    }
    return {AXError::attributeUnsupported, NullValue{}};
}

bool isTextSettable(std::string_view attribute) {
    return attribute == attribute::value || attribute == attribute::selectedText ||
           attribute == attribute::selectedTextRange;
}

AXError setText(TextState& state, std::string_view attribute, const AttributeValue& value) {
    if (attribute == attribute::selectedTextRange) {
        const auto* range = std::get_if<TextRange>(&value);
        if (range == nullptr || !isInside(*range, state.text)) {
            return AXError::illegalArgument;
        }
        state.selection = *range;
        return AXError::success;
    }
    const auto* written = std::get_if<Text>(&value);
    if (written == nullptr) {
        return AXError::illegalArgument;
    }
    if (attribute == attribute::value) {
        state.text = *written;
        state.selection = {lengthOf(state.text), 0};
        return AXError::success;
    }
    const TextRange selection = state.selection;
    state.text.replace(offset(selection.location), offset(selection.length), *written);
    state.selection = {selection.location + lengthOf(*written), 0};
    return AXError::success;
}

}  // namespace lomaris::simulated
