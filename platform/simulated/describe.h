#pragma once

#include "platform/accessibility.h"
#include "platform/pasteboard.h"
#include "platform/scheduling.h"
#include "platform/workspace.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Formats arguments and results of boundary calls for the journal. Every function appends to a line.
namespace lomaris::simulated {

/// Seconds with nine decimals.
void appendSeconds(std::string& line, Duration duration);
void appendInteger(std::string& line, std::int64_t number);
void appendBoolean(std::string& line, bool value);
/// In quotes; quotes, backslashes and control characters are escaped.
void appendQuoted(std::string& line, std::string_view utf8);
void appendQuoted(std::string& line, TextView text);

/// "812" for the root of an application, "812/3" for its third element, "system-wide", or "no element".
void appendElement(std::string& line, const Element& element);
void appendValue(std::string& line, const AttributeValue& value);
void appendAnswer(std::string& line, const AttributeAnswer& answer);
void appendAnswer(std::string& line, const ElementAnswer& answer);
void appendAnswer(std::string& line, const SettableAnswer& answer);
/// "success", or the code.
void appendError(std::string& line, AXError error);

/// "812 com.example.notes "Notes"", or "nothing".
void appendApplication(std::string& line, const std::optional<RunningApplication>& application);
void appendBytes(std::string& line, const std::optional<Bytes>& bytes);

/// A list in brackets; `appendOne(line, member)` appends one member.
template <typename List, typename AppendOne>
void appendList(std::string& line, const List& list, AppendOne appendOne) {
    line += '[';
    bool isFirst = true;
    for (const auto& member : list) {
        if (!isFirst) {
            line += ", ";
        }
        isFirst = false;
        appendOne(line, member);
    }
    line += ']';
}

}  // namespace lomaris::simulated
