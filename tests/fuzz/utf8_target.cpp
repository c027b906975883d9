// Bytes as UTF-8, repaired where they are not, and the same bytes as UTF-16 units, halves of pairs among them. Every
// answer is compared with that of the slow reference.

#include "tests/fuzz/fuzz_target.h"
#include "tests/fuzz/input_text.h"
#include "tests/text/reference.h"
#include "text/utf8.h"

#include <string>

namespace lomaris::test {
namespace {

void tryBytes(std::string_view bytes) {
    const reference::Decoded expected = reference::decodeUtf8(bytes);
    require(isValidUtf8(bytes) == expected.isValid, "well-formed is what the reference calls so");
    const Text text = textFromUtf8(bytes);
    require(text == expected.text, "every ill-formed part is one U+FFFD");
    const auto valid = textFromValidUtf8(bytes);
    require(valid.has_value() == expected.isValid, "only well-formed bytes are a text");
    require(!valid || *valid == text, "well-formed bytes are not repaired");
    const std::string repaired = utf8FromText(text);
    require(isValidUtf8(repaired), "repaired bytes are well-formed");
    require(textFromUtf8(repaired) == text, "what was repaired stays as it is");
    require(!expected.isValid || repaired == bytes, "well-formed bytes come back");
}

void tryUnits(const Text& text) {
    const std::string bytes = utf8FromText(text);
    require(bytes == reference::utf8(text), "a text is the UTF-8 that the reference makes of it");
    require(isValidUtf8(bytes), "a text is well-formed UTF-8");
    std::string appended = "x";
    appendUtf8(appended, text);
    require(appended == "x" + bytes, "appended is the same as made");
    const Text back = textFromUtf8(bytes);
    require(utf8FromText(back) == bytes, "a text without halves of pairs comes back");
    require(back.size() == text.size(), "half a pair becomes one unit");
}

}  // namespace

void tryInput(std::string_view bytes) {
    tryBytes(bytes);
    tryUnits(unitsIn(bytes));
}

}  // namespace lomaris::test
