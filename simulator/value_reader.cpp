#include "simulator/value_reader.h"

#include "platform/simulated/element_state.h"
#include "simulator/base64.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
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

constexpr std::array<std::string_view, 7> answerKeys{"element", "application", "elements", "range",
                                                     "kind",    "error",       "inTurn"};
/// The keys of a result inside "inTurn".
constexpr std::span<const std::string_view> singleAnswerKeys(answerKeys.data(), 6);
constexpr std::span<const std::string_view> valueKeys(answerKeys.data(), 5);

AttributeValue readKind(const JsonNode& node) {
    const std::string kind = node.choice({"mixedArray", "otherBoxed", "other"});
    if (kind == "mixedArray") {
        return MixedArray{};
    }
    if (kind == "otherBoxed") {
        return OtherBoxedValue{};
    }
    return OtherValue{};
}

std::vector<Element> readElements(const JsonNode& node, const Stage& stage) {
    std::vector<Element> elements;
    for (const JsonNode& member : node.members()) {
        elements.push_back(readElementOrRoot(member, stage).element());
    }
    return elements;
}

AttributeValue readValueObject(const JsonNode& node, const Stage& stage) {
    const std::string_view key = node.onlyKey(valueKeys);
    const JsonNode held = node.get(key);
    if (key == "element") {
        return readElement(held, stage).element();
    }
    if (key == "application") {
        return readApplication(held, stage).root.element();
    }
    if (key == "elements") {
        return readElements(held, stage);
    }
    return key == "range" ? readRange(held) : readKind(held);
}

AttributeAnswer readAnswer(const JsonNode& node, const Stage& stage) {
    if (node.value().is_object() && node.onlyKey(singleAnswerKeys) == "error") {
        return answer(readErrorCode(node.get("error")));
    }
    return answer(readValue(node, stage));
}

constexpr std::array<std::string_view, 3> contentsKeys{"text", "base64", "promised"};
constexpr std::span<const std::string_view> bytesKeys(contentsKeys.data(), 2);

/// Reads bytes. In the error message, `otherForms` precedes the expected forms: "null, ".
Bytes readBytesOr(std::string_view otherForms, const JsonNode& node) {
    if (node.value().is_string()) {
        return node.string();
    }
    const std::string_view key = node.onlyKey(bytesKeys, std::string(otherForms) + "a string or ");
    const JsonNode held = node.get(key);
    if (key == "text") {
        return held.string();
    }
    const std::optional<std::string> bytes = bytesOfBase64(held.string());
    if (!bytes) {
        held.refuse("Base64 with its padding");
    }
    return *bytes;
}

CopiedItem readPasteboardItem(const JsonNode& node) {
    CopiedItem item;
    for (const auto& [type, contents] : node.entries()) {
        if (type.empty()) {
            node.refuse("types with names that are not empty");
        }
        if (contents.value().is_string() || contents.onlyKey(contentsKeys, "a string or ") != "promised") {
            item.data.emplace_back(type, readBytes(contents));
            continue;
        }
        const JsonNode promised = contents.get("promised");
        const std::optional<Bytes> kept =
            promised.isNull() ? std::nullopt : std::optional(readBytesOr("null, ", promised));
        item.promises.emplace_back(type, [kept] { return kept; });
    }
    return item;
}

}  // namespace

std::string errorCodeForms() {
    std::vector<std::string_view> names;
    for (const auto& entry : errorNames) {
        names.push_back(entry.first);
    }
    return "an integer of 32 bits or one of: " + listOf(names);
}

AXError readErrorCode(const JsonNode& node) {
    const Json& value = node.value();
    if (value.is_number_integer()) {
        constexpr std::int64_t bound = std::int64_t{1} << 31;
        return static_cast<AXError>(node.integer(-bound, bound - 1));
    }
    const std::string name = value.is_string() ? node.string() : "";
    const auto* const found =
        std::find_if(errorNames.begin(), errorNames.end(), [&name](const auto& entry) { return entry.first == name; });
    if (found == errorNames.end()) {
        node.refuse(errorCodeForms());
    }
    return found->second;
}

const StagedApplication& readApplication(const JsonNode& node, const Stage& stage, std::string_view otherForms) {
    for (const auto& [process, application] : stage.applications) {
        if (node.value() == process) {
            return application;
        }
    }
    node.refuse(std::string(otherForms) + "the process identifier of an application of this file");
}

SimulatedElement readElement(const JsonNode& node, const Stage& stage) {
    const auto found = node.value().is_string() ? stage.named.find(node.string()) : stage.named.end();
    if (found == stage.named.end()) {
        node.refuse("the name of an element of this file");
    }
    return found->second;
}

SimulatedElement readElementOrRoot(const JsonNode& node, const Stage& stage) {
    if (node.value().is_object()) {
        node.allowKeys({"application"});
        return readApplication(node.get("application"), stage).root;
    }
    const auto found = node.value().is_string() ? stage.named.find(node.string()) : stage.named.end();
    if (found == stage.named.end()) {
        node.refuse("the name of an element of this file or {\"application\": process identifier}");
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

std::optional<Duration> readDurationOrForever(const JsonNode& node) {
    if (node.value() == "forever") {
        return std::nullopt;
    }
    if (!node.value().is_number()) {
        node.refuse("\"forever\" or a number of seconds");
    }
    return node.seconds();
}

TextRange readRange(const JsonNode& node) {
    if (!node.value().is_array() || node.value().size() != 2) {
        node.refuse("a position and a length, [0, 5]");
    }
    const std::vector<JsonNode> numbers = node.members();
    const Json& location = numbers[0].value();
    const bool isNowhere = location == "notFound";
    if (!isNowhere && !location.is_number_integer()) {
        numbers[0].refuse("an integer of 64 bits or \"notFound\"");
    }
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
    if (!node.value().is_object() || node.onlyKey(answerKeys) != "inTurn") {
        return {readAnswer(node, stage)};
    }
    const JsonNode inTurn = node.get("inTurn");
    std::vector<AttributeAnswer> answers;
    for (const JsonNode& member : inTurn.members()) {
        if (member.value().is_object() && member.find("inTurn")) {
            member.refuse("an answer that is not \"inTurn\" again");
        }
        answers.push_back(readAnswer(member, stage));
    }
    if (answers.empty()) {
        inTurn.refuse("at least one answer");
    }
    return answers;
}

Bytes readBytes(const JsonNode& node) { return readBytesOr("", node); }

PasteboardType readType(const JsonNode& node) {
    std::string type = node.string();
    if (type.empty()) {
        node.refuse("the name of a type, which is not empty");
    }
    return type;
}

std::vector<CopiedItem> readPasteboardItems(const JsonNode& node) {
    std::vector<CopiedItem> items;
    for (const JsonNode& member : node.members()) {
        items.push_back(readPasteboardItem(member));
    }
    return items;
}

}  // namespace lomaris::simulator
