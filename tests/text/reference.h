#pragma once

#include "text/text.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The functions of `text/` implemented slowly and literally from the standards, to compare with.
namespace lomaris::test::reference {

/// Returns the code points of `text`; half a surrogate pair is U+FFFD.
[[nodiscard]] std::vector<char32_t> codePoints(TextView text);

/// Returns the characters of `text`, as code points. Every rule may read back to the start of the text.
[[nodiscard]] std::vector<std::vector<char32_t>> characters(TextView text);

/// True if the result of the library's own break function for `text` depends on the library's version: if the text
/// contains an unassigned code point or a virama, which joins consonants only in some versions.
[[nodiscard]] bool dependsOnLibraryVersion(TextView text);

/// Returns the number of characters by the library's own break function.
[[nodiscard]] std::int64_t libraryCharacterCount(TextView text);

/// Returns the canonical decomposition of `text` as UTF-8, by the library's own normalization of the whole text.
[[nodiscard]] std::string decomposed(TextView text);

[[nodiscard]] bool hasCharacterPrefix(TextView text, TextView prefix);

[[nodiscard]] std::string utf8(TextView text);

/// Decoded bytes, with one U+FFFD for every maximal ill-formed part. Valid if there was no such part.
struct Decoded {
    Text text;
    bool isValid = true;
};
[[nodiscard]] Decoded decodeUtf8(std::string_view bytes);

}  // namespace lomaris::test::reference
