#include "accessibility/model/selection_json.h"

#include "accessibility/model/selection_fields.h"
#include "json/json_record.h"

#include <tuple>

namespace lomaris {

template <>
constexpr auto jsonFieldsOf<SelectionPayload> = std::tuple{
    JsonField{"applicationName", &SelectionPayload::applicationName},
    JsonField{"bundleIdentifier", &SelectionPayload::bundleIdentifier},
    JsonField{"contextAfter", &SelectionPayload::contextAfter},
    JsonField{"contextBefore", &SelectionPayload::contextBefore},
    JsonField{"inputActivity", &SelectionPayload::inputActivity},
    JsonField{"processIdentifier", &SelectionPayload::processIdentifier},
    JsonField{"selectedRange", &SelectionPayload::selectedRange},
    JsonField{"selectedText", &SelectionPayload::selectedText},
    JsonField{"selectionMethod", &SelectionPayload::selectionMethod},
    JsonField{"supportsDirectReplacement", &SelectionPayload::supportsDirectReplacement},
};

std::string encodeJson(const SelectionPayload& payload, SlashEscaping slashes) {
    return encodeJsonRecord(payload, slashes);
}

std::optional<SelectionPayload> decodeSelectionPayload(std::string_view bytes) {
    return decodeJsonRecord<SelectionPayload>(bytes);
}

}  // namespace lomaris
