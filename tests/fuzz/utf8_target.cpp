// Bytes are read as UTF-8, repaired if ill-formed, and as UTF-16 units, including halves of surrogate pairs. Every
// result is compared with that of the slow reference.

#include "tests/fuzz/fuzz_target.h"
#include "tests/fuzz/input_text.h"
#include "tests/text/reference.h"
#include "text/utf8.h"

#include <string>

namespace lomaris::test {
namespace {

void tryBytes(std::string_view bytes) {
    const reference::Decoded expected = reference::decodeUtf8(bytes);
    require(isValidUtf8(bytes) == expected.isValid, "well-formedness is that of the reference");
    const Text text = textFromUtf8(bytes);
    require(text == expected.text, "every ill-formed part is one U+FFFD");
    const auto valid = textFromValidUtf8(bytes);
    require(valid.has_value() == expected.isValid, "only well-formed bytes are accepted");
    require(!valid || *valid == text, "well-formed bytes are not repaired");
    const std::string repaired = utf8FromText(text);
    require(isValidUtf8(repaired), "repaired bytes are well-formed");
    require(textFromUtf8(repaired) == text, "repaired text survives a round trip");
    require(!expected.isValid || repaired == bytes, "well-formed bytes survive a round trip");
}

void tryUnits(const Text& text) {
    const std::string bytes = utf8FromText(text);
    require(bytes == reference::utf8(text), "the encoding is that of the reference");
    require(isValidUtf8(bytes), "an encoded text is well-formed");
    std::string appended = "x";
    appendUtf8(appended, text);
    require(appended == "x" + bytes, "appending gives the same bytes as encoding");
    const Text back = textFromUtf8(bytes);
    require(utf8FromText(back) == bytes, "an encoded text survives a round trip");
    require(back.size() == text.size(), "half a pair becomes one unit");
}

}  // namespace

void tryInput(std::string_view bytes) {
    tryBytes(bytes);
    tryUnits(unitsFromBytes(bytes));
}

}  // namespace lomaris::test
