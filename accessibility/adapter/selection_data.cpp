#include "accessibility/adapter/selection_data.h"

#include "accessibility/adapter/attribute_access.h"
#include "accessibility/adapter/text_context.h"
#include "platform/attributes.h"

#include <utility>

namespace lomaris {

SelectionData readSelectionData(Accessibility& accessibility, const Element& element) {
    return valueOrThrow(tryReadSelectionData(accessibility, element));
}

Outcome<SelectionData> tryReadSelectionData(Accessibility& accessibility, const Element& element) {
    SelectionData data;
    data.range = copySelectedRange(accessibility, element);
    data.fullText = copyOptionalStringAttribute(accessibility, element, attribute::value);

    AttributeAnswer answer = accessibility.copyAttribute(element, attribute::selectedText);
    const Text* const selectedText = valueIn<Text>(answer);
    if (selectedText != nullptr && !selectedText->empty()) {
        data.text = *selectedText;
        return data;
    }
    if (data.range && data.range->length > 0 && data.fullText) {
        if (auto text = TextContext::selectedText(*data.fullText, *data.range)) {
            data.text = std::move(*text);
            return data;
        }
    }
    if (selectedText == nullptr) {
        return BridgeError::selectedTextUnavailable(answer.error);
    }
    return data;
}

}  // namespace lomaris
