// Texts of UTF-16 units, halves of pairs among them: characters, equality and prefixes, compared with the slow
// reference and with what must hold of any text.

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

/// The reference takes the square of the length.
constexpr std::size_t longestCompared = 256;

void tryCount(const Text& text) {
    const std::int64_t count = characterCount(text);
    if (text.size() <= longestCompared) {
        require(count == static_cast<std::int64_t>(reference::characters(text).size()),
                "there are as many characters as the reference finds");
    }
    std::int64_t ends = 0;
    for (std::size_t position = 0; position < text.size(); ++ends) {
        const std::size_t end = characterEnd(text, position);
        require(end > position && end <= text.size(), "a character ends behind its beginning, inside of the text");
        position = end;
    }
    require(ends == count, "characters are counted as they are walked over");
    // A control is a character of its own, which nothing in front of it changes.
    require(characterCount(text + u"\x01") == count + 1, "a control behind a text is one more character");
    require(characterCount(u"abcdefghijklmnopqrstuvw\x01" + text) == 24 + count,
            "what a control parts is counted apart");
}

void tryPair(const Text& text, const Text& other) {
    const bool isEqual = canonicallyEqual(text, other);
    require(isEqual == (reference::decomposed(text) == reference::decomposed(other)), "equality is by decomposition");
    require(isEqual == canonicallyEqual(other, text), "equality has no direction");
    require(hasCharacterPrefix(text, other) == reference::hasCharacterPrefix(text, other),
            "a prefix is character by character");
    static_cast<void>(containsIgnoringCase(text, other, CaseRules::common));
    static_cast<void>(containsIgnoringCase(text, other, CaseRules::turkic));
}

}  // namespace

void tryInput(std::string_view bytes) {
    const Text text = unitsIn(bytes);
    tryCount(text);
    tryCount(textFromUtf8(bytes));
    require(canonicallyEqual(text, text), "a text equals itself");
    require(hasCharacterPrefix(text, u"") && hasCharacterPrefix(text, text), "nothing and all are prefixes");
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
