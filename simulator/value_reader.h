#pragma once

#include "platform/accessibility.h"
#include "platform/simulated/simulated_pasteboard_item.h"
#include "simulator/json_node.h"
#include "simulator/stage.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Values of attributes, error codes, and items of the pasteboard, as a desktop file writes them.
namespace lomaris::simulator {

/// The name of a code ("cannotComplete") or its number.
[[nodiscard]] AXError readErrorCode(const JsonNode& node);

/// "an integer of 32 bits or one of: success, failure, ...".
[[nodiscard]] std::string errorCodeForms();

/// An application by its process identifier; it must be one of the file. `otherForms` is what the complaint names
/// before it: "null or ".
[[nodiscard]] const StagedApplication& readApplication(const JsonNode& node, const Stage& stage,
                                                       std::string_view otherForms = "");

/// An element by its name; it must stand on the stage already.
[[nodiscard]] SimulatedElement readElement(const JsonNode& node, const Stage& stage);

/// The same, or the root of an application: {"application": 812}.
[[nodiscard]] SimulatedElement readElementOrRoot(const JsonNode& node, const Stage& stage);

/// An element by its name that is a text area.
[[nodiscard]] SimulatedTextElement readTextElement(const JsonNode& node, const Stage& stage);

/// Seconds, or "forever" (nullopt).
[[nodiscard]] std::optional<Duration> readDurationOrForever(const JsonNode& node);

/// Two numbers, position and length.
[[nodiscard]] TextRange readRange(const JsonNode& node);

[[nodiscard]] AttributeValue readValue(const JsonNode& node, const Stage& stage);

/// One answer, or the list under "inTurn", which is not empty.
[[nodiscard]] std::vector<AttributeAnswer> readAnswers(const JsonNode& node, const Stage& stage);

[[nodiscard]] Bytes readBytes(const JsonNode& node);

/// The name of a type, which is not empty.
[[nodiscard]] PasteboardType readType(const JsonNode& node);

/// Items of another program.
[[nodiscard]] std::vector<CopiedItem> readPasteboardItems(const JsonNode& node);

}  // namespace lomaris::simulator
