#include "accessibility/model/guarded_replacement_request_json.h"

#include "accessibility/model/selection_fields.h"
#include "json/json_record.h"

#include <tuple>

namespace lomaris {

template <>
constexpr auto jsonFieldsOf<GuardedReplacementRequest> = std::tuple{
    JsonField{"expectedBundleIdentifier", &GuardedReplacementRequest::expectedBundleIdentifier},
    JsonField{"expectedInputActivity", &GuardedReplacementRequest::expectedInputActivity},
    JsonField{"expectedProcessIdentifier", &GuardedReplacementRequest::expectedProcessIdentifier},
    JsonField{"expectedSelectedRange", &GuardedReplacementRequest::expectedSelectedRange},
    JsonField{"expectedText", &GuardedReplacementRequest::expectedText},
    JsonField{"replacementText", &GuardedReplacementRequest::replacementText},
};

std::string encodeJson(const GuardedReplacementRequest& request, SlashEscaping slashes) {
    return encodeJsonRecord(request, slashes);
}

std::optional<GuardedReplacementRequest> decodeGuardedReplacementRequest(std::string_view bytes) {
    return decodeJsonRecord<GuardedReplacementRequest>(bytes);
}

}  // namespace lomaris
