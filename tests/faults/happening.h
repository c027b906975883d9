#pragma once

#include "platform/attribute_value.h"
#include "platform/attributes.h"
#include "text/text.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris::test {

/// A text of the desktop and what is selected in it.
struct Document {
    Text text;
    TextRange selection;

    [[nodiscard]] Text selectedText() const {
        return text.substr(static_cast<std::size_t>(selection.location), static_cast<std::size_t>(selection.length));
    }

    friend bool operator==(const Document&, const Document&) = default;
};

/// How a call went, as far as the faults are concerned: what it answered otherwise is the desktop's affair.
enum class Fate {
    /// It reached the desktop, and the tool saw the answer.
    answered,
    /// It never reached the desktop; the tool saw a failure.
    refused,
    /// It reached the desktop, but the tool saw a failure.
    answerLost,
};

enum class Who { tool, target, user };

/// One thing that happened in a run, in the order of the run: a call of the tool, with the name of the boundary
/// function and what it was about ("copyAttribute", "AXSelectedText"; "postToSession", "paste"); a copy that the target
/// application made; something that the user did.
struct Happening {
    Who who = Who::tool;
    std::string what;
    std::string about = {};
    Fate fate = Fate::answered;
    /// Of a copy of an attribute that was answered: whether the element had such a value.
    bool foundValue = true;
    /// The target's document just before.
    Document document = {};
    /// How many lines the journal of the desktop had.
    std::size_t journalLines = 0;

    [[nodiscard]] bool isCall(std::string_view call) const { return who == Who::tool && what == call; }
    [[nodiscard]] bool isCall(std::string_view call, std::string_view subject) const {
        return isCall(call) && about == subject;
    }
};

using Happenings = std::vector<Happening>;

/// The tool copied this attribute and got a value.
[[nodiscard]] inline bool isValueRead(const Happening& happening, std::string_view attribute) {
    return happening.isCall("copyAttribute", attribute) && happening.fate == Fate::answered && happening.foundValue;
}

/// A key stroke that the tool posted.
[[nodiscard]] inline bool isPost(const Happening& happening) {
    return happening.isCall("postToSession") || happening.isCall("postToProcess");
}

[[nodiscard]] inline bool isPaste(const Happening& happening) {
    return isPost(happening) && happening.about == "paste";
}
[[nodiscard]] inline bool isDelete(const Happening& happening) {
    return isPost(happening) && happening.about == "delete";
}

/// The tool sets the selected text of an element, with whatever result.
[[nodiscard]] inline bool isAttemptToWrite(const Happening& happening) {
    return happening.isCall("setAttribute", attribute::selectedText);
}

}  // namespace lomaris::test
