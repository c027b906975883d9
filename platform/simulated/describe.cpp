#include "platform/simulated/describe.h"

#include "platform/simulated/element_state.h"
#include "text/utf8.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <type_traits>
#include <variant>

namespace lomaris::simulated {
namespace {

constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;

void appendEscaped(std::string& line, char character) {
    switch (character) {
        case '"':
            line += "\\\"";
            return;
        case '\\':
            line += "\\\\";
            return;
        case '\n':
            line += "\\n";
            return;
        case '\r':
            line += "\\r";
            return;
        case '\t':
            line += "\\t";
            return;
        default:
            break;
    }
    const auto code = static_cast<unsigned char>(character);
    if (code >= 0x20 && code != 0x7f) {
        line += character;
        return;
    }
    constexpr std::string_view digits = "0123456789abcdef";
    line += "\\x";
    line += digits[code >> 4U];
    line += digits[code & 0xfU];
}

void appendReal(std::string& line, double number) {
    std::array<char, 32> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.15g", number);
    line += buffer.data();
}

}  // namespace

void appendInteger(std::string& line, std::int64_t number) {
    std::array<char, 24> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
    line.append(buffer.data(), result.ptr);
}

void appendSeconds(std::string& line, Duration duration) {
    // Split before negating: the smallest duration has no positive counterpart, its parts do.
    const std::int64_t seconds = duration.count() / nanosecondsPerSecond;
    const std::int64_t nanoseconds = duration.count() % nanosecondsPerSecond;
    if (duration < Duration::zero()) {
        line += '-';
    }
    appendInteger(line, std::abs(seconds));
    line += '.';
    std::string decimals;
    appendInteger(decimals, std::abs(nanoseconds));
    line.append(9 - decimals.size(), '0');
    line += decimals;
}

void appendBoolean(std::string& line, bool value) { line += value ? "true" : "false"; }

void appendQuoted(std::string& line, std::string_view utf8) {
    line += '"';
    for (const char character : utf8) {
        appendEscaped(line, character);
    }
    line += '"';
}

void appendQuoted(std::string& line, TextView text) { appendQuoted(line, std::string_view(utf8FromText(text))); }

void appendElement(std::string& line, const Element& element) {
    const SimulatedReference& reference = referenceOf(element);
    switch (reference.kind()) {
        case ReferenceKind::systemWide:
            line += "system-wide";
            return;
        case ReferenceKind::noElement:
            line += "no element";
            return;
        case ReferenceKind::root:
            appendInteger(line, reference.process());
            return;
        case ReferenceKind::member:
            appendInteger(line, reference.process());
            line += '/';
            appendInteger(line, reference.number());
            return;
    }
}

void appendValue(std::string& line, const AttributeValue& value) {
    std::visit(
        [&line](const auto& held) {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, NullValue>) {
                line += "null";
            } else if constexpr (std::is_same_v<Held, Text>) {
                appendQuoted(line, TextView(held));
            } else if constexpr (std::is_same_v<Held, bool>) {
                appendBoolean(line, held);
            } else if constexpr (std::is_same_v<Held, std::int64_t>) {
                appendInteger(line, held);
            } else if constexpr (std::is_same_v<Held, OtherNumber>) {
                line += "number ";
                appendReal(line, held.value);
            } else if constexpr (std::is_same_v<Held, Element>) {
                appendElement(line, held);
            } else if constexpr (std::is_same_v<Held, std::vector<Element>>) {
                appendList(line, held, appendElement);
            } else if constexpr (std::is_same_v<Held, MixedArray>) {
                line += "mixed array";
            } else if constexpr (std::is_same_v<Held, TextRange>) {
                line += '{';
                appendInteger(line, held.location);
                line += ", ";
                appendInteger(line, held.length);
                line += '}';
            } else if constexpr (std::is_same_v<Held, OtherBoxedValue>) {
                line += "other boxed value";
            } else {
                static_assert(std::is_same_v<Held, OtherValue>);
                line += "other value";
            }
        },
        value);
}

void appendError(std::string& line, AXError error) {
    if (error == AXError::success) {
        line += "success";
        return;
    }
    line += "error ";
    appendInteger(line, codeOf(error));
}

void appendAnswer(std::string& line, const AttributeAnswer& answer) {
    if (answer.error != AXError::success) {
        appendError(line, answer.error);
        return;
    }
    appendValue(line, answer.value);
}

void appendAnswer(std::string& line, const ElementAnswer& answer) {
    if (answer.error != AXError::success) {
        appendError(line, answer.error);
        return;
    }
    if (!answer.element) {
        line += "null";
        return;
    }
    appendElement(line, *answer.element);
}

void appendAnswer(std::string& line, const SettableAnswer& answer) {
    if (answer.error != AXError::success) {
        appendError(line, answer.error);
        return;
    }
    appendBoolean(line, answer.settable);
}

void appendApplication(std::string& line, const std::optional<RunningApplication>& application) {
    if (!application) {
        line += "nothing";
        return;
    }
    appendInteger(line, application->processIdentifier);
    line += ' ';
    line += application->bundleIdentifier ? utf8FromText(*application->bundleIdentifier) : "(no identifier)";
    line += ' ';
    if (application->localizedName) {
        appendQuoted(line, TextView(*application->localizedName));
    } else {
        line += "(no name)";
    }
}

void appendBytes(std::string& line, const std::optional<Bytes>& bytes) {
    if (!bytes) {
        line += "nothing";
        return;
    }
    appendQuoted(line, std::string_view(*bytes));
}

}  // namespace lomaris::simulated
