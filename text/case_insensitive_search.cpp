#include "text/case_insensitive_search.h"

#include "text/utf8.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace lomaris {

namespace {

using CodePoints = std::vector<utf8proc_int32_t>;

/// A case-folded text, and its character boundaries as indexes of code points, including its start and end.
struct FoldedText {
    CodePoints codePoints;
    std::vector<std::size_t> boundaries{0};
};

/// Decomposes `utf8`, with marks in canonical order. `moreOptions` are additional utf8proc options.
CodePoints decomposed(const std::string& utf8, int moreOptions = 0) {
    const auto options = static_cast<utf8proc_option_t>(moreOptions | UTF8PROC_STABLE | UTF8PROC_DECOMPOSE);
    const auto* const bytes = reinterpret_cast<const utf8proc_uint8_t*>(utf8.data());
    const auto length = static_cast<utf8proc_ssize_t>(utf8.size());
    const utf8proc_ssize_t size = utf8proc_decompose(bytes, length, nullptr, 0, options);
    CodePoints result(size > 0 ? static_cast<std::size_t>(size) : 0);
    if (!result.empty()) {
        utf8proc_decompose(bytes, length, result.data(), size, options);
    }
    return result;
}

/// Returns the index of the combining dot above that belongs to the letter at `letter`, or the size of `codePoints` if
/// there is none.
std::size_t dotAbove(const CodePoints& codePoints, std::size_t letter) {
    constexpr utf8proc_int32_t dot = 0x307;
    constexpr utf8proc_propval_t above = 230;
    for (std::size_t position = letter + 1; position < codePoints.size(); ++position) {
        if (codePoints[position] == dot) {
            return position;
        }
        const utf8proc_propval_t markClass = utf8proc_get_property(codePoints[position])->combining_class;
        if (markClass == 0 || markClass == above) {
            break;
        }
    }
    return codePoints.size();
}

/// Replaces each capital I by its Turkish lower-case letter: "i" if a combining dot above follows, otherwise dotless i.
std::string withTurkicLetters(const std::string& utf8) {
    constexpr utf8proc_int32_t dotlessI = 0x131;
    CodePoints codePoints = decomposed(utf8);
    for (std::size_t position = 0; position < codePoints.size(); ++position) {
        if (codePoints[position] != 'I') {
            continue;
        }
        const std::size_t dot = dotAbove(codePoints, position);
        const bool hasDot = dot < codePoints.size();
        codePoints[position] = hasDot ? 'i' : dotlessI;
        if (hasDot) {
            codePoints.erase(codePoints.begin() + static_cast<std::ptrdiff_t>(dot));
        }
    }
    std::string result;
    for (const utf8proc_int32_t codePoint : codePoints) {
        std::array<utf8proc_uint8_t, 4> bytes{};
        const utf8proc_ssize_t size = utf8proc_encode_char(codePoint, bytes.data());
        result.append(bytes.begin(), bytes.begin() + size);
    }
    return result;
}

/// Folds the case of `utf8` and decomposes it, with marks in canonical order.
CodePoints folded(const std::string& utf8, CaseRules rules) {
    return decomposed(rules == CaseRules::turkic ? withTurkicLetters(utf8) : utf8, UTF8PROC_CASEFOLD);
}

/// Calls `take` with each user-perceived character of `text`, encoded in UTF-8.
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

/// Replaces a character that is too long to be part of a match.
constexpr utf8proc_int32_t unequalToAll = -1;

/// Folds `text`. A character of more than `longest` code points becomes `unequalToAll`, because ordering the marks of a
/// character takes time proportional to the square of their number.
FoldedText foldedText(TextView text, CaseRules rules, std::size_t longest) {
    FoldedText result;
    forEachCharacter(text, [&result, rules, longest](const std::string& character) {
        const CodePoints part =
            codePointCount(character) > longest ? CodePoints{unequalToAll} : folded(character, rules);
        result.codePoints.insert(result.codePoints.end(), part.begin(), part.end());
        result.boundaries.push_back(result.codePoints.size());
    });
    return result;
}

}  // namespace

CaseRules caseRulesOf(std::string_view language) {
    return language == "tr" || language == "az" ? CaseRules::turkic : CaseRules::common;
}

bool containsIgnoringCase(TextView text, TextView word, CaseRules rules) {
    const CodePoints needle = foldedText(word, rules, std::numeric_limits<std::size_t>::max()).codePoints;
    // A match consists of whole characters, none of which is longer than the word after folding. Folding keeps at least
    // half of the code points of a character: the Turkic rules merge "I" and a dot into one.
    const FoldedText haystack = foldedText(text, rules, 2 * needle.size());
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
