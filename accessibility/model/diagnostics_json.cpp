#include "accessibility/model/diagnostics_json.h"

#include "json/json_fields.h"
#include "accessibility/model/selection_json.h"

#include <cstdint>
#include <utility>
#include <variant>

namespace lomaris {

namespace {

void writeOptional(JsonWriter& writer, std::string_view key, const std::optional<Text>& text) {
    if (text) {
        writer.key(key);
        writer.string(*text);
    }
}

void writeOptional(JsonWriter& writer, std::string_view key, std::optional<std::int64_t> number) {
    if (number) {
        writer.key(key);
        writer.integer(*number);
    }
}

void writeJson(JsonWriter& writer, const AccessibilityNodeDiagnostic& node) {
    writer.beginObject();
    writer.key("childCount");
    writer.integer(node.childCount);
    writer.key("depth");
    writer.integer(node.depth);
    writer.key("focused");
    writer.boolean(node.focused);
    writeOptional(writer, "identifier", node.identifier);
    writer.key("path");
    writer.string(node.path);
    writeOptional(writer, "role", node.role);
    if (node.selectedRange) {
        writer.key("selectedRange");
        lomaris::writeJson(writer, *node.selectedRange);
    }
    writeOptional(writer, "selectedTextLength", node.selectedTextLength);
    writer.key("selectedTextSettable");
    writer.boolean(node.selectedTextSettable);
    writer.key("selectedTextStatus");
    writer.integer(node.selectedTextStatus);
    writeOptional(writer, "subrole", node.subrole);
    writeOptional(writer, "valueLength", node.valueLength);
    writer.endObject();
}

std::optional<std::int64_t> optionalInteger(JsonFields& fields, std::string_view key) {
    return fields.optional(key) == nullptr ? std::nullopt : std::optional(fields.integer<std::int64_t>(key));
}

std::optional<AccessibilityNodeDiagnostic> decodeNode(const JsonValue& value) {
    JsonFields fields(
        value, {"path", "depth", "role", "subrole", "identifier", "focused", "selectedTextStatus", "selectedTextLength",
                "selectedRange", "valueLength", "selectedTextSettable", "childCount"});
    AccessibilityNodeDiagnostic node;
    node.path = fields.text("path");
    node.depth = fields.integer<std::int64_t>("depth");
    node.role = fields.optionalText("role");
    node.subrole = fields.optionalText("subrole");
    node.identifier = fields.optionalText("identifier");
    node.focused = fields.boolean("focused");
    node.selectedTextStatus = fields.integer<std::int32_t>("selectedTextStatus");
    node.selectedTextLength = optionalInteger(fields, "selectedTextLength");
    if (const JsonValue* const range = fields.optional("selectedRange")) {
        node.selectedRange = decodeSelectionRange(*range);
        if (!node.selectedRange) {
            fields.fail();
        }
    }
    node.valueLength = optionalInteger(fields, "valueLength");
    node.selectedTextSettable = fields.boolean("selectedTextSettable");
    node.childCount = fields.integer<std::int64_t>("childCount");
    return fields.isComplete() ? std::optional(std::move(node)) : std::nullopt;
}

std::optional<std::vector<AccessibilityNodeDiagnostic>> decodeNodes(const JsonValue& value) {
    const auto members = elementsOf(value);
    if (!members) {
        return std::nullopt;
    }
    std::vector<AccessibilityNodeDiagnostic> nodes;
    nodes.reserve(members->size());
    for (const JsonValue& member : *members) {
        auto node = decodeNode(member);
        if (!node) {
            return std::nullopt;
        }
        nodes.push_back(std::move(*node));
    }
    return nodes;
}

}  // namespace

std::string encodeJson(const AccessibilityDiagnosticPayload& payload, SlashEscaping slashes) {
    JsonWriter writer(slashes);
    writer.beginObject();
    writeOptional(writer, "applicationName", payload.applicationName);
    writeOptional(writer, "bundleIdentifier", payload.bundleIdentifier);
    writer.key("processIdentifier");
    writer.integer(payload.processIdentifier);
    writer.key("relevantNodes");
    writer.beginArray();
    for (const AccessibilityNodeDiagnostic& node : payload.relevantNodes) {
        writeJson(writer, node);
    }
    writer.endArray();
    writer.key("scannedNodeCount");
    writer.integer(payload.scannedNodeCount);
    writer.key("truncated");
    writer.boolean(payload.truncated);
    writer.endObject();
    return writer.take();
}

std::string encodeJson(const CompatibilityDiagnosticPayload& payload, SlashEscaping slashes) {
    JsonWriter writer(slashes);
    writer.beginObject();
    writeOptional(writer, "applicationName", payload.applicationName);
    writeOptional(writer, "bundleIdentifier", payload.bundleIdentifier);
    writer.key("contextAfterLength");
    writer.integer(payload.contextAfterLength);
    writer.key("contextBeforeLength");
    writer.integer(payload.contextBeforeLength);
    writer.key("schemaVersion");
    writer.integer(payload.schemaVersion);
    writer.key("selectionLength");
    writer.integer(payload.selectionLength);
    writer.key("selectionMethod");
    writer.string(payload.selectionMethod);
    writer.key("selectionReadable");
    writer.boolean(payload.selectionReadable);
    writer.key("supportsDirectReplacement");
    writer.boolean(payload.supportsDirectReplacement);
    writer.key("usesClipboardFallback");
    writer.boolean(payload.usesClipboardFallback);
    writer.endObject();
    return writer.take();
}

std::optional<AccessibilityDiagnosticPayload> decodeAccessibilityDiagnostic(std::string_view bytes) {
    const auto document = parseJson(bytes);
    if (!document) {
        return std::nullopt;
    }
    JsonFields fields(*document, {"applicationName", "bundleIdentifier", "processIdentifier", "scannedNodeCount",
                                  "truncated", "relevantNodes"});
    AccessibilityDiagnosticPayload payload;
    payload.applicationName = fields.optionalText("applicationName");
    payload.bundleIdentifier = fields.optionalText("bundleIdentifier");
    payload.processIdentifier = fields.integer<ProcessIdentifier>("processIdentifier");
    payload.scannedNodeCount = fields.integer<std::int64_t>("scannedNodeCount");
    payload.truncated = fields.boolean("truncated");
    if (const JsonValue* const nodes = fields.required("relevantNodes")) {
        if (auto decoded = decodeNodes(*nodes)) {
            payload.relevantNodes = std::move(*decoded);
        } else {
            fields.fail();
        }
    }
    return fields.isComplete() ? std::optional(std::move(payload)) : std::nullopt;
}

std::optional<CompatibilityDiagnosticPayload> decodeCompatibilityDiagnostic(std::string_view bytes) {
    const auto document = parseJson(bytes);
    if (!document) {
        return std::nullopt;
    }
    JsonFields fields(*document, {"schemaVersion", "applicationName", "bundleIdentifier", "selectionReadable",
                                  "selectionLength", "selectionMethod", "usesClipboardFallback",
                                  "supportsDirectReplacement", "contextBeforeLength", "contextAfterLength"});
    CompatibilityDiagnosticPayload payload;
    payload.schemaVersion = fields.integer<std::int64_t>("schemaVersion");
    payload.applicationName = fields.optionalText("applicationName");
    payload.bundleIdentifier = fields.optionalText("bundleIdentifier");
    payload.selectionReadable = fields.boolean("selectionReadable");
    payload.selectionLength = fields.integer<std::int64_t>("selectionLength");
    payload.selectionMethod = fields.text("selectionMethod");
    payload.usesClipboardFallback = fields.boolean("usesClipboardFallback");
    payload.supportsDirectReplacement = fields.boolean("supportsDirectReplacement");
    payload.contextBeforeLength = fields.integer<std::int64_t>("contextBeforeLength");
    payload.contextAfterLength = fields.integer<std::int64_t>("contextAfterLength");
    return fields.isComplete() ? std::optional(std::move(payload)) : std::nullopt;
}

}  // namespace lomaris
