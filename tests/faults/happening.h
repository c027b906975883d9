#pragma once

#include "platform/attribute_value.h"
#include "platform/attributes.h"
#include "text/text.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris::test {

/// A text of the desktop and its selection.
struct Document {
    Text text;
    TextRange selection;

    [[nodiscard]] Text selectedText() const {
        return text.substr(static_cast<std::size_t>(selection.location), static_cast<std::size_t>(selection.length));
    }

    friend bool operator==(const Document&, const Document&) = default;
};

/// The outcome of a call with respect to the faults; otherwise the result is that of the desktop.
enum class Fate {
    /// It reached the desktop, and its result reached the tool.
    answered,
    /// It did not reach the desktop; the tool saw a failure.
    refused,
    /// It reached the desktop, but the tool saw a failure.
    answerLost,
};

/// The program or person that caused a happening.
enum class Who { tool, target, user };

/// One event of a run, in the order of the run: a boundary call of the tool, a copy by the target application, or an
/// action of the user. For a call, `what` is the function and `about` its subject ("copyAttribute", "AXSelectedText" or
/// "postToSession", "paste").
struct Happening {
    Who who = Who::tool;
    std::string what;
    std::string about = {};
    Fate fate = Fate::answered;
    /// For a successful copy of an attribute: whether the attribute had a value.
    bool foundValue = true;
    /// The target's document just before the event.
    Document document = {};
    /// The number of lines in the desktop's journal.
    std::size_t journalLines = 0;

    [[nodiscard]] bool isCall(std::string_view call) const { return who == Who::tool && what == call; }
    [[nodiscard]] bool isCall(std::string_view call, std::string_view subject) const {
        return isCall(call) && about == subject;
    }
};

using Happenings = std::vector<Happening>;

/// True if the tool copied this attribute and got a value.
[[nodiscard]] inline bool isValueRead(const Happening& happening, std::string_view attribute) {
    return happening.isCall("copyAttribute", attribute) && happening.fate == Fate::answered && happening.foundValue;
}

/// True if the tool posted a key stroke.
[[nodiscard]] inline bool isPost(const Happening& happening) {
    return happening.isCall("postToSession") || happening.isCall("postToProcess");
}

[[nodiscard]] inline bool isPaste(const Happening& happening) {
    return isPost(happening) && happening.about == "paste";
}
[[nodiscard]] inline bool isDelete(const Happening& happening) {
    return isPost(happening) && happening.about == "delete";
}

/// True if the tool set the selected text of an element, whatever the result.
[[nodiscard]] inline bool isAttemptToWrite(const Happening& happening) {
    return happening.isCall("setAttribute", attribute::selectedText);
}

}  // namespace lomaris::test
