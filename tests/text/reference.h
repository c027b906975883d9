#pragma once

#include "text/text.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The same questions as in `text/`, answered slowly and in the most literal way, to compare with.
namespace lomaris::test::reference {

/// The code points of `text`; half a surrogate pair is U+FFFD.
[[nodiscard]] std::vector<char32_t> codePoints(TextView text);

/// The characters of `text`, as code points. Every rule looks back through the whole text.
[[nodiscard]] std::vector<std::vector<char32_t>> characters(TextView text);

/// Whether the library's own break function may answer anything for `text`, depending on its version: it holds a
/// virama, which may or may not link consonants, or a code point that is not assigned yet.
[[nodiscard]] bool dependsOnLibraryVersion(TextView text);

/// How many characters there are by the library's own break function.
[[nodiscard]] std::int64_t libraryCharacterCount(TextView text);

/// The canonical decomposition of `text`, by the library's own normalisation of the whole text.
[[nodiscard]] std::string decomposed(TextView text);

[[nodiscard]] bool hasCharacterPrefix(TextView text, TextView prefix);

[[nodiscard]] std::string utf8(TextView text);

/// `bytes` as a text with one U+FFFD for every maximal ill-formed part, and whether there was none.
struct Decoded {
    Text text;
    bool isValid = true;
};
[[nodiscard]] Decoded decodeUtf8(std::string_view bytes);

}  // namespace lomaris::test::reference
