// Texts of UTF-16 units, including halves of surrogate pairs: characters, equality and prefixes are compared with the
// slow reference and with properties of any text.

#include "tests/fuzz/fuzz_target.h"
#include "tests/fuzz/input_text.h"
#include "tests/text/reference.h"
#include "text/case_insensitive_search.h"
#include "text/character_breaker.h"
#include "text/characters.h"
#include "text/equality.h"
#include "text/utf8.h"

#include <cstddef>
#include <cstdint>

namespace lomaris::test {
namespace {

/// The reference takes time proportional to the square of the length.
constexpr std::size_t longestCompared = 256;

void tryCount(const Text& text) {
    const std::int64_t count = characterCount(text);
    if (text.size() <= longestCompared) {
        require(count == static_cast<std::int64_t>(reference::characters(text).size()),
                "the number of characters is that of the reference");
    }
    std::int64_t ends = 0;
    for (std::size_t position = 0; position < text.size(); ++ends) {
        const std::size_t end = characterEnd(text, position);
        require(end > position && end <= text.size(), "a character ends after its start and inside the text");
        position = end;
    }
    require(ends == count, "the count equals the number of character ends");
    // A control character is always a character of its own.
    require(characterCount(text + u"\x01") == count + 1, "a control character after a text is one more character");
    require(characterCount(u"abcdefghijklmnopqrstuvw\x01" + text) == 24 + count,
            "texts on both sides of a control character count separately");
}

void tryPair(const Text& text, const Text& other) {
    const bool isEqual = canonicallyEqual(text, other);
    require(isEqual == (reference::decomposed(text) == reference::decomposed(other)),
            "texts are equal if their decompositions are");
    require(isEqual == canonicallyEqual(other, text), "equality is symmetric");
    require(hasCharacterPrefix(text, other) == reference::hasCharacterPrefix(text, other),
            "prefixes are compared by character");
    static_cast<void>(containsIgnoringCase(text, other, CaseRules::common));
    static_cast<void>(containsIgnoringCase(text, other, CaseRules::turkic));
}

}  // namespace

void tryInput(std::string_view bytes) {
    const Text text = unitsFromBytes(bytes);
    tryCount(text);
    tryCount(textFromUtf8(bytes));
    require(canonicallyEqual(text, text), "a text equals itself");
    require(hasCharacterPrefix(text, u"") && hasCharacterPrefix(text, text),
            "the empty text and the text itself are prefixes");
    for (const CaseRules rules : {CaseRules::common, CaseRules::turkic}) {
        require(text.empty() || containsIgnoringCase(text, text, rules), "a text contains itself");
    }
    if (text.size() <= longestCompared) {
        const std::size_t middle = text.size() / 2;
        tryPair(text, text.substr(0, middle));
        tryPair(text.substr(0, middle), text.substr(middle));
    }
}

}  // namespace lomaris::test
