#include "text/case_insensitive_search.h"

#include "text/utf8.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace lomaris {

namespace {

using CodePoints = std::vector<utf8proc_int32_t>;

/// A text folded for comparison, and the positions in it that lie between characters, its start and end included.
struct FoldedText {
    CodePoints codePoints;
    std::vector<std::size_t> boundaries{0};
};

/// `utf8` with its case folded, decomposed, marks in canonical order.
CodePoints folded(const std::string& utf8) {
    constexpr auto options = static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_DECOMPOSE | UTF8PROC_CASEFOLD);
    const auto* const bytes = reinterpret_cast<const utf8proc_uint8_t*>(utf8.data());
    const auto length = static_cast<utf8proc_ssize_t>(utf8.size());
    const utf8proc_ssize_t size = utf8proc_decompose(bytes, length, nullptr, 0, options);
    CodePoints result(size > 0 ? static_cast<std::size_t>(size) : 0);
    if (!result.empty()) {
        utf8proc_decompose(bytes, length, result.data(), size, options);
    }
    return result;
}

/// Calls `take` with each user-perceived character of `text`, as UTF-8.
template <typename Take>
void forEachCharacter(TextView text, Take take) {
    const std::string utf8 = utf8FromText(text);
    const auto* const bytes = reinterpret_cast<const utf8proc_uint8_t*>(utf8.data());
    utf8proc_int32_t previous = -1;
    utf8proc_int32_t state = 0;
    std::size_t start = 0;
    std::size_t position = 0;
    while (position < utf8.size()) {
        utf8proc_int32_t current = 0;
        const utf8proc_ssize_t size =
            utf8proc_iterate(bytes + position, static_cast<utf8proc_ssize_t>(utf8.size() - position), &current);
        if (previous >= 0 && utf8proc_grapheme_break_stateful(previous, current, &state)) {
            take(utf8.substr(start, position - start));
            start = position;
        }
        previous = current;
        position += static_cast<std::size_t>(std::max<utf8proc_ssize_t>(size, 1));
    }
    if (start < utf8.size()) {
        take(utf8.substr(start));
    }
}

std::size_t codePointCount(const std::string& utf8) {
    return static_cast<std::size_t>(std::count_if(
        utf8.begin(), utf8.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

/// Stands for a character that is not worth folding.
constexpr utf8proc_int32_t unequalToAll = -1;

/// `text` folded; of characters with more code points than `longest` it only tells that they are there. Ordering the
/// marks of a character takes time that grows with the square of their number.
FoldedText foldedText(TextView text, std::size_t longest) {
    FoldedText result;
    forEachCharacter(text, [&result, longest](const std::string& character) {
        const CodePoints part = codePointCount(character) > longest ? CodePoints{unequalToAll} : folded(character);
        result.codePoints.insert(result.codePoints.end(), part.begin(), part.end());
        result.boundaries.push_back(result.codePoints.size());
    });
    return result;
}

}  // namespace

bool containsIgnoringCase(TextView text, TextView word) {
    const CodePoints needle = foldedText(word, std::numeric_limits<std::size_t>::max()).codePoints;
    // A part that is equal to the word consists of whole characters, none of them longer than the word.
    const FoldedText haystack = foldedText(text, needle.size());
    if (haystack.codePoints.empty()) {
        return false;
    }
    return std::any_of(haystack.boundaries.begin(), haystack.boundaries.end(), [&](std::size_t start) {
        const std::size_t end = start + needle.size();
        return end <= haystack.codePoints.size() &&
               std::binary_search(haystack.boundaries.begin(), haystack.boundaries.end(), end) &&
               std::equal(needle.begin(), needle.end(),
                          haystack.codePoints.begin() + static_cast<std::ptrdiff_t>(start));
    });
}

}  // namespace lomaris
