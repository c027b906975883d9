#include "accessibility/model/guarded_replacement_request_json.h"

#include "json/json_fields.h"
#include "accessibility/model/selection_json.h"

#include <utility>

namespace lomaris {

std::string encodeJson(const GuardedReplacementRequest& request, SlashEscaping slashes) {
    JsonWriter writer(slashes);
    writer.beginObject();
    if (request.expectedBundleIdentifier) {
        writer.key("expectedBundleIdentifier");
        writer.string(*request.expectedBundleIdentifier);
    }
    writer.key("expectedInputActivity");
    writeJson(writer, request.expectedInputActivity);
    writer.key("expectedProcessIdentifier");
    writer.integer(request.expectedProcessIdentifier);
    if (request.expectedSelectedRange) {
        writer.key("expectedSelectedRange");
        writeJson(writer, *request.expectedSelectedRange);
    }
    writer.key("expectedText");
    writer.string(request.expectedText);
    writer.key("replacementText");
    writer.string(request.replacementText);
    writer.endObject();
    return writer.take();
}

std::optional<GuardedReplacementRequest> decodeGuardedReplacementRequest(std::string_view bytes) {
    const auto document = parseJson(bytes);
    if (!document) {
        return std::nullopt;
    }
    JsonFields fields(*document, {"expectedText", "expectedProcessIdentifier", "expectedBundleIdentifier",
                                  "expectedSelectedRange", "expectedInputActivity", "replacementText"});
    GuardedReplacementRequest request;
    request.expectedText = fields.text("expectedText");
    request.expectedProcessIdentifier = fields.integer<ProcessIdentifier>("expectedProcessIdentifier");
    request.expectedBundleIdentifier = fields.optionalText("expectedBundleIdentifier");
    if (const JsonValue* const range = fields.optional("expectedSelectedRange")) {
        request.expectedSelectedRange = decodeSelectionRange(*range);
        if (!request.expectedSelectedRange) {
            fields.fail();
        }
    }
    if (const JsonValue* const activity = fields.required("expectedInputActivity")) {
        if (const auto decoded = decodeInputActivity(*activity)) {
            request.expectedInputActivity = *decoded;
        } else {
            fields.fail();
        }
    }
    request.replacementText = fields.text("replacementText");
    return fields.isComplete() ? std::optional(std::move(request)) : std::nullopt;
}

}  // namespace lomaris
