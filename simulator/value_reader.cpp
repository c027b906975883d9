#include "simulator/value_reader.h"

#include "platform/simulated/element_state.h"
#include "simulator/base64.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace lomaris::simulator {
namespace {

constexpr std::array<std::pair<std::string_view, AXError>, 10> errorNames{{
    {"success", AXError::success},
    {"failure", AXError::failure},
    {"illegalArgument", AXError::illegalArgument},
    {"invalidUIElement", AXError::invalidUIElement},
    {"cannotComplete", AXError::cannotComplete},
    {"attributeUnsupported", AXError::attributeUnsupported},
    {"actionUnsupported", AXError::actionUnsupported},
    {"notImplemented", AXError::notImplemented},
    {"apiDisabled", AXError::apiDisabled},
    {"noValue", AXError::noValue},
}};

constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();

Element readElementOrApplication(const JsonNode& node, const Stage& stage) {
    if (!node.value().is_object()) {
        return readElement(node, stage).element();
    }
    node.allowKeys({"application"});
    return simulated::makeElement(simulated::ReferenceKind::root, readProcessIdentifier(node.get("application")), 0,
                                  nullptr);
}

AttributeValue readKind(const JsonNode& node) {
    const std::string kind = node.string();
    if (kind == "mixedArray") {
        return MixedArray{};
    }
    if (kind == "otherBoxed") {
        return OtherBoxedValue{};
    }
    if (kind == "other") {
        return OtherValue{};
    }
    node.refuse("\"mixedArray\", \"otherBoxed\" or \"other\"");
}

std::vector<Element> readElements(const JsonNode& node, const Stage& stage) {
    std::vector<Element> elements;
    for (const JsonNode& member : node.members()) {
        elements.push_back(readElementOrApplication(member, stage));
    }
    return elements;
}

AttributeValue readValueObject(const JsonNode& node, const Stage& stage) {
    node.allowKeys({"element", "application", "elements", "range", "kind", "error", "inTurn"});
    if (node.value().size() == 1) {
        if (const auto element = node.find("element")) {
            return readElement(*element, stage).element();
        }
        if (node.find("application")) {
            return readElementOrApplication(node, stage);
        }
        if (const auto elements = node.find("elements")) {
            return readElements(*elements, stage);
        }
        if (const auto range = node.find("range")) {
            return readRange(*range);
        }
        if (const auto kind = node.find("kind")) {
            return readKind(*kind);
        }
    }
    node.refuse("an object with one of the keys element, application, elements, range, kind");
}

AttributeAnswer readAnswer(const JsonNode& node, const Stage& stage) {
    if (node.value().is_object() && node.value().size() == 1) {
        if (const auto error = node.find("error")) {
            return answer(readErrorCode(*error));
        }
    }
    return answer(readValue(node, stage));
}

CopiedItem readPasteboardItem(const JsonNode& node) {
    CopiedItem item;
    for (const auto& [type, contents] : node.entries()) {
        const auto promised = contents.value().is_object() ? contents.find("promised") : std::nullopt;
        if (!promised) {
            item.data.emplace_back(type, readBytes(contents));
            continue;
        }
        contents.allowKeys({"promised"});
        const std::optional<Bytes> kept = promised->isNull() ? std::nullopt : std::optional(readBytes(*promised));
        item.promises.emplace_back(type, [kept] { return kept; });
    }
    return item;
}

}  // namespace

AXError readErrorCode(const JsonNode& node) {
    if (!node.value().is_string()) {
        return static_cast<AXError>(
            node.integer(std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
    }
    const std::string name = node.string();
    const auto* const found =
        std::find_if(errorNames.begin(), errorNames.end(), [&name](const auto& entry) { return entry.first == name; });
    if (found == errorNames.end()) {
        std::string names;
        for (const auto& entry : errorNames) {
            names += names.empty() ? "" : ", ";
            names += entry.first;
        }
        node.refuse("a number or one of: " + names);
    }
    return found->second;
}

ProcessIdentifier readProcessIdentifier(const JsonNode& node) {
    return static_cast<ProcessIdentifier>(node.integer(1, std::numeric_limits<ProcessIdentifier>::max()));
}

SimulatedElement readElement(const JsonNode& node, const Stage& stage) {
    const auto found = node.value().is_string() ? stage.named.find(node.string()) : stage.named.end();
    if (found == stage.named.end()) {
        node.refuse("the name of an element of this file");
    }
    return found->second;
}

SimulatedTextElement readTextElement(const JsonNode& node, const Stage& stage) {
    const SimulatedElement element = readElement(node, stage);
    if (!element.state().text) {
        node.refuse("the name of an element with the key \"text\"");
    }
    return SimulatedTextElement(element.state());
}

TextRange readRange(const JsonNode& node) {
    if (!node.value().is_array() || node.value().size() != 2) {
        node.refuse("a position and a length, [0, 5]");
    }
    const std::vector<JsonNode> numbers = node.members();
    const Json& location = numbers[0].value();
    const bool isNowhere = location.is_string() && location.get<std::string>() == "notFound";
    return {isNowhere ? notFoundLocation : numbers[0].integer(lowest, highest), numbers[1].integer(lowest, highest)};
}

AttributeValue readValue(const JsonNode& node, const Stage& stage) {
    const Json& value = node.value();
    if (value.is_null()) {
        return NullValue{};
    }
    if (value.is_boolean()) {
        return value.get<bool>();
    }
    if (value.is_number_float()) {
        return OtherNumber{value.get<double>()};
    }
    if (value.is_number()) {
        return node.integer(lowest, highest);
    }
    if (value.is_object()) {
        return readValueObject(node, stage);
    }
    return node.text();
}

std::vector<AttributeAnswer> readAnswers(const JsonNode& node, const Stage& stage) {
    const auto inTurn = node.value().is_object() ? node.find("inTurn") : std::nullopt;
    if (!inTurn) {
        return {readAnswer(node, stage)};
    }
    node.allowKeys({"inTurn"});
    std::vector<AttributeAnswer> answers;
    for (const JsonNode& member : inTurn->members()) {
        answers.push_back(readAnswer(member, stage));
    }
    if (answers.empty()) {
        inTurn->refuse("at least one answer");
    }
    return answers;
}

Bytes readBytes(const JsonNode& node) {
    if (node.value().is_string()) {
        return node.string();
    }
    node.allowKeys({"text", "base64", "promised"});
    if (const auto text = node.find("text"); text && node.value().size() == 1) {
        return text->string();
    }
    if (const auto base64 = node.find("base64"); base64 && node.value().size() == 1) {
        const std::optional<std::string> bytes = bytesOfBase64(base64->string());
        if (!bytes) {
            base64->refuse("Base64 with its padding");
        }
        return *bytes;
    }
    node.refuse("a string, {\"text\": ...} or {\"base64\": ...}");
}

std::vector<CopiedItem> readPasteboardItems(const JsonNode& node) {
    std::vector<CopiedItem> items;
    for (const JsonNode& member : node.members()) {
        items.push_back(readPasteboardItem(member));
    }
    return items;
}

}  // namespace lomaris::simulator
