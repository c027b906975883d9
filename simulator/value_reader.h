#pragma once

#include "platform/accessibility.h"
#include "platform/simulated/simulated_pasteboard_item.h"
#include "simulator/json_node.h"
#include "simulator/stage.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Readers of attribute values, error codes and pasteboard items of a desktop file.
namespace lomaris::simulator {

/// Reads an error code: its name ("cannotComplete") or its number.
[[nodiscard]] AXError readErrorCode(const JsonNode& node);

/// Describes the accepted error codes: "an integer of 32 bits or one of: success, failure, ...".
[[nodiscard]] std::string errorCodeForms();

/// Reads the process identifier of an application of the file. In the error message, `otherForms` precedes the expected
/// form: "null or ".
[[nodiscard]] const StagedApplication& readApplication(const JsonNode& node, const Stage& stage,
                                                       std::string_view otherForms = "");

/// Reads the name of an element that is already on the stage.
[[nodiscard]] SimulatedElement readElement(const JsonNode& node, const Stage& stage);

/// As `readElement`, or the root of an application: {"application": 812}.
[[nodiscard]] SimulatedElement readElementOrRoot(const JsonNode& node, const Stage& stage);

/// Reads the name of an element that is a text area.
[[nodiscard]] SimulatedTextElement readTextElement(const JsonNode& node, const Stage& stage);

/// Reads a number of seconds, or "forever" (nullopt).
[[nodiscard]] std::optional<Duration> readDurationOrForever(const JsonNode& node);

/// Reads a range: two numbers, position and length.
[[nodiscard]] TextRange readRange(const JsonNode& node);

[[nodiscard]] AttributeValue readValue(const JsonNode& node, const Stage& stage);

/// Reads one result of copying an attribute, or the list under "inTurn", which must not be empty.
[[nodiscard]] std::vector<AttributeAnswer> readAnswers(const JsonNode& node, const Stage& stage);

[[nodiscard]] Bytes readBytes(const JsonNode& node);

/// Reads the name of a pasteboard type, which must not be empty.
[[nodiscard]] PasteboardType readType(const JsonNode& node);

/// Reads the pasteboard items of another program.
[[nodiscard]] std::vector<CopiedItem> readPasteboardItems(const JsonNode& node);

}  // namespace lomaris::simulator
