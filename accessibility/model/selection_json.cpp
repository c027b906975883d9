#include "accessibility/model/selection_json.h"

#include "json/json_fields.h"

#include <cstdint>

namespace lomaris {

void writeJson(JsonWriter& writer, const SelectionRangePayload& range) {
    writer.beginObject();
    writer.key("length");
    writer.integer(range.length);
    writer.key("location");
    writer.integer(range.location);
    writer.endObject();
}

void writeJson(JsonWriter& writer, const InputActivitySnapshot& activity) {
    writer.beginObject();
    writer.key("keyDownCount");
    writer.integer(activity.keyDownCount);
    writer.key("leftMouseDownCount");
    writer.integer(activity.leftMouseDownCount);
    writer.key("otherMouseDownCount");
    writer.integer(activity.otherMouseDownCount);
    writer.key("rightMouseDownCount");
    writer.integer(activity.rightMouseDownCount);
    writer.endObject();
}

std::string encodeJson(const SelectionPayload& payload, SlashEscaping slashes) {
    JsonWriter writer(slashes);
    writer.beginObject();
    if (payload.applicationName) {
        writer.key("applicationName");
        writer.string(*payload.applicationName);
    }
    if (payload.bundleIdentifier) {
        writer.key("bundleIdentifier");
        writer.string(*payload.bundleIdentifier);
    }
    writer.key("contextAfter");
    writer.string(payload.contextAfter);
    writer.key("contextBefore");
    writer.string(payload.contextBefore);
    writer.key("inputActivity");
    writeJson(writer, payload.inputActivity);
    writer.key("processIdentifier");
    writer.integer(payload.processIdentifier);
    if (payload.selectedRange) {
        writer.key("selectedRange");
        writeJson(writer, *payload.selectedRange);
    }
    writer.key("selectedText");
    writer.string(payload.selectedText);
    writer.key("selectionMethod");
    writer.string(payload.selectionMethod);
    writer.key("supportsDirectReplacement");
    writer.boolean(payload.supportsDirectReplacement);
    writer.endObject();
    return writer.take();
}

std::optional<SelectionRangePayload> decodeSelectionRange(const JsonValue& value) {
    JsonFields fields(value, {"location", "length"});
    SelectionRangePayload range;
    range.location = fields.integer<std::int64_t>("location");
    range.length = fields.integer<std::int64_t>("length");
    return fields.isComplete() ? std::optional(range) : std::nullopt;
}

std::optional<InputActivitySnapshot> decodeInputActivity(const JsonValue& value) {
    JsonFields fields(value, {"keyDownCount", "leftMouseDownCount", "rightMouseDownCount", "otherMouseDownCount"});
    InputActivitySnapshot activity;
    activity.keyDownCount = fields.integer<std::uint32_t>("keyDownCount");
    activity.leftMouseDownCount = fields.integer<std::uint32_t>("leftMouseDownCount");
    activity.rightMouseDownCount = fields.integer<std::uint32_t>("rightMouseDownCount");
    activity.otherMouseDownCount = fields.integer<std::uint32_t>("otherMouseDownCount");
    return fields.isComplete() ? std::optional(activity) : std::nullopt;
}

std::optional<SelectionPayload> decodeSelectionPayload(std::string_view bytes) {
    const auto document = parseJson(bytes);
    if (!document) {
        return std::nullopt;
    }
    JsonFields fields(
        *document, {"applicationName", "bundleIdentifier", "processIdentifier", "selectedText", "contextBefore",
                    "contextAfter", "selectedRange", "inputActivity", "supportsDirectReplacement", "selectionMethod"});
    SelectionPayload payload;
    payload.applicationName = fields.optionalText("applicationName");
    payload.bundleIdentifier = fields.optionalText("bundleIdentifier");
    payload.processIdentifier = fields.integer<ProcessIdentifier>("processIdentifier");
    payload.selectedText = fields.text("selectedText");
    payload.contextBefore = fields.text("contextBefore");
    payload.contextAfter = fields.text("contextAfter");
    if (const JsonValue* const range = fields.optional("selectedRange")) {
        payload.selectedRange = decodeSelectionRange(*range);
        if (!payload.selectedRange) {
            fields.fail();
        }
    }
    if (const JsonValue* const activity = fields.required("inputActivity")) {
        if (const auto decoded = decodeInputActivity(*activity)) {
            payload.inputActivity = *decoded;
        } else {
            fields.fail();
        }
    }
    payload.supportsDirectReplacement = fields.boolean("supportsDirectReplacement");
    payload.selectionMethod = fields.text("selectionMethod");
    return fields.isComplete() ? std::optional(std::move(payload)) : std::nullopt;
}

}  // namespace lomaris
