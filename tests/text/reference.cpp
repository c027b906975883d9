#include "tests/text/reference.h"

#include "tests/text/random_text.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <stdexcept>

namespace lomaris::test::reference {

namespace {

using CodePoints = std::vector<char32_t>;

const utf8proc_property_t& propertyOf(char32_t codePoint) {
    return *utf8proc_get_property(static_cast<utf8proc_int32_t>(codePoint));
}

/// Returns the class of an unassigned code point, as `classOf` does. The standard reserves plane 14 and a few other
/// code points for invisible controls, and the emoji blocks for pictographs.
char reservedClassOf(char32_t codePoint) {
    const char32_t block = codePoint / 0x100;
    if (codePoint == 0x2065 || codePoint / 0x10 == 0xFFF || block / 0x10 == 0xE0) {
        return codePoint % 0x10000 >= 0xFFFE ? 'o' : 'C';
    }
    const bool isEmojiBlock = block >= 0x1F0 && block <= 0x1FF && block != 0x1FB;
    return isEmojiBlock && codePoint < 0x1FFFE ? 'E' : 'o';
}

/// Returns the break class as a letter: C control, X extend, J joiner, M spacing mark, P prepend, R regional indicator,
/// E pictograph, L V T for the parts and A B for the syllables (LV, LVT) of Hangul, o for all others.
char classOf(char32_t codePoint) {
    if (propertyOf(codePoint).category == UTF8PROC_CATEGORY_CN) {
        return reservedClassOf(codePoint);
    }
    switch (propertyOf(codePoint).boundclass) {
        case UTF8PROC_BOUNDCLASS_CR:
        case UTF8PROC_BOUNDCLASS_LF:
        case UTF8PROC_BOUNDCLASS_CONTROL:
            return 'C';
        case UTF8PROC_BOUNDCLASS_EXTEND:
            return 'X';
        case UTF8PROC_BOUNDCLASS_ZWJ:
            return 'J';
        case UTF8PROC_BOUNDCLASS_SPACINGMARK:
            return 'M';
        case UTF8PROC_BOUNDCLASS_PREPEND:
            return 'P';
        case UTF8PROC_BOUNDCLASS_REGIONAL_INDICATOR:
            return 'R';
        case UTF8PROC_BOUNDCLASS_EXTENDED_PICTOGRAPHIC:
            return 'E';
        case UTF8PROC_BOUNDCLASS_L:
            return 'L';
        case UTF8PROC_BOUNDCLASS_V:
            return 'V';
        case UTF8PROC_BOUNDCLASS_T:
            return 'T';
        case UTF8PROC_BOUNDCLASS_LV:
            return 'A';
        case UTF8PROC_BOUNDCLASS_LVT:
            return 'B';
        default:
            return 'o';
    }
}

bool isOneOf(char letter, std::string_view letters) { return letters.find(letter) != std::string_view::npos; }

bool isVirama(char32_t codePoint) {
    static constexpr std::u32string_view viramas = U"\u094D\u09CD\u0ACD\u0B4D\u0C4D\u0D4D";
    return viramas.find(codePoint) != std::u32string_view::npos;
}

bool isConjunctConsonant(char32_t codePoint) {
    // The blocks of these scripts share one layout; each has its own gaps and additions.
    static constexpr std::u32string_view gaps =
        U"\u0929\u0931\u0934"
        U"\u09A9\u09B1\u09B3\u09B4\u09B5"
        U"\u0AA9\u0AB1\u0AB4"
        U"\u0B29\u0B31\u0B34"
        U"\u0C29";
    static constexpr std::u32string_view additions =
        U"\u0929\u0931\u0934\u0958\u0959\u095A\u095B\u095C\u095D\u095E\u095F\u0978\u0979\u097A\u097B\u097C\u097D\u097E"
        U"\u097F\u09DC\u09DD\u09DF\u09F0\u09F1\u0AF9\u0B5C\u0B5D\u0B5F\u0B71\u0C58\u0C59\u0C5A\u0D3A";
    if (additions.find(codePoint) != std::u32string_view::npos) {
        return true;
    }
    static constexpr std::array<char32_t, 6> blocks{0x900, 0x980, 0xA80, 0xB00, 0xC00, 0xD00};
    return gaps.find(codePoint) == std::u32string_view::npos &&
           std::any_of(blocks.begin(), blocks.end(),
                       [codePoint](char32_t block) { return codePoint >= block + 0x15 && codePoint <= block + 0x39; });
}

/// True if `index` follows a consonant, (mark | joiner | virama)*, with at least one virama among them.
bool linksConjunct(const CodePoints& text, std::size_t index) {
    bool sawVirama = false;
    while (index > 0) {
        const char32_t codePoint = text[--index];
        if (isConjunctConsonant(codePoint)) {
            return sawVirama;
        }
        const bool isMark = classOf(codePoint) == 'X' && propertyOf(codePoint).combining_class != 0;
        if (!isMark && classOf(codePoint) != 'J') {
            return false;
        }
        sawVirama = sawVirama || isVirama(codePoint);
    }
    return false;
}

/// True if `index` follows a pictograph, extend*, joiner.
bool joinsPictographs(const CodePoints& text, std::size_t index) {
    if (classOf(text[index - 1]) != 'J') {
        return false;
    }
    --index;
    while (index > 0 && classOf(text[index - 1]) == 'X') {
        --index;
    }
    return index > 0 && classOf(text[index - 1]) == 'E';
}

bool isWithinFlag(const CodePoints& text, std::size_t index) {
    std::size_t indicators = 0;
    while (indicators < index && classOf(text[index - 1 - indicators]) == 'R') {
        ++indicators;
    }
    return indicators % 2 == 1;
}

bool breaksBefore(const CodePoints& text, std::size_t index) {
    if (index == 0) {
        return true;
    }
    const char last = classOf(text[index - 1]);
    const char next = classOf(text[index]);
    if (text[index - 1] == U'\r' && text[index] == U'\n') {
        return false;
    }
    if (last == 'C' || next == 'C') {
        return true;
    }
    const bool isSyllable = (last == 'L' && isOneOf(next, "LVAB")) || (isOneOf(last, "AV") && isOneOf(next, "VT")) ||
                            (isOneOf(last, "BT") && next == 'T');
    if (isSyllable || isOneOf(next, "XJM") || last == 'P') {
        return false;
    }
    if (isConjunctConsonant(text[index]) && linksConjunct(text, index)) {
        return false;
    }
    if (next == 'E' && joinsPictographs(text, index)) {
        return false;
    }
    return !(next == 'R' && isWithinFlag(text, index));
}

void appendEncoded(std::string& bytes, char32_t codePoint) {
    std::array<utf8proc_uint8_t, 4> buffer{};
    const auto size = utf8proc_encode_char(static_cast<utf8proc_int32_t>(codePoint), buffer.data());
    bytes.append(buffer.begin(), buffer.begin() + size);
}

/// One row of the table of well-formed byte sequences.
struct Form {
    std::vector<std::pair<int, int>> ranges;
};

const std::vector<Form>& forms() {
    static const std::vector<Form> table{
        {{{0x00, 0x7F}}},
        {{{0xC2, 0xDF}, {0x80, 0xBF}}},
        {{{0xE0, 0xE0}, {0xA0, 0xBF}, {0x80, 0xBF}}},
        {{{0xE1, 0xEC}, {0x80, 0xBF}, {0x80, 0xBF}}},
        {{{0xED, 0xED}, {0x80, 0x9F}, {0x80, 0xBF}}},
        {{{0xEE, 0xEF}, {0x80, 0xBF}, {0x80, 0xBF}}},
        {{{0xF0, 0xF0}, {0x90, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}}},
        {{{0xF1, 0xF3}, {0x80, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}}},
        {{{0xF4, 0xF4}, {0x80, 0x8F}, {0x80, 0xBF}, {0x80, 0xBF}}},
    };
    return table;
}

/// Returns how many bytes, from the first, are in the ranges of the row.
std::size_t matchingByteCount(const Form& form, std::string_view bytes) {
    std::size_t count = 0;
    while (count < form.ranges.size() && count < bytes.size()) {
        const int byte = static_cast<unsigned char>(bytes[count]);
        if (byte < form.ranges[count].first || byte > form.ranges[count].second) {
            break;
        }
        ++count;
    }
    return count;
}

char32_t codePointOf(std::string_view sequence) {
    utf8proc_int32_t codePoint = 0;
    const auto size = static_cast<utf8proc_ssize_t>(sequence.size());
    if (utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(sequence.data()), size, &codePoint) != size) {
        throw std::logic_error("not well-formed: " + hexOf(sequence));
    }
    return static_cast<char32_t>(codePoint);
}

}  // namespace

CodePoints codePoints(TextView text) {
    CodePoints result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned unit = text[i];
        const unsigned following = i + 1 < text.size() ? text[i + 1] : 0U;
        if (unit < 0xD800 || unit > 0xDFFF) {
            result.push_back(unit);
        } else if (unit <= 0xDBFF && following >= 0xDC00 && following <= 0xDFFF) {
            result.push_back(0x10000 + (unit - 0xD800) * 0x400 + (following - 0xDC00));
            ++i;
        } else {
            result.push_back(0xFFFD);
        }
    }
    return result;
}

std::vector<CodePoints> characters(TextView text) {
    const CodePoints all = codePoints(text);
    std::vector<CodePoints> result;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (breaksBefore(all, i)) {
            result.emplace_back();
        }
        result.back().push_back(all[i]);
    }
    return result;
}

bool dependsOnLibraryVersion(TextView text) {
    constexpr int viramaClass = 9;
    const CodePoints all = codePoints(text);
    return std::any_of(all.begin(), all.end(), [](char32_t codePoint) {
        const utf8proc_property_t& property = propertyOf(codePoint);
        return property.combining_class == viramaClass || property.category == UTF8PROC_CATEGORY_CN;
    });
}

std::int64_t libraryCharacterCount(TextView text) {
    const CodePoints all = codePoints(text);
    std::int64_t count = all.empty() ? 0 : 1;
    utf8proc_int32_t state = 0;
    for (std::size_t i = 1; i < all.size(); ++i) {
        const auto last = static_cast<utf8proc_int32_t>(all[i - 1]);
        count += utf8proc_grapheme_break_stateful(last, static_cast<utf8proc_int32_t>(all[i]), &state) ? 1 : 0;
    }
    return count;
}

std::string decomposed(TextView text) {
    const std::string bytes = utf8(text);
    utf8proc_uint8_t* mapped = nullptr;
    const auto size = utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(bytes.data()),
                                   static_cast<utf8proc_ssize_t>(bytes.size()), &mapped, UTF8PROC_DECOMPOSE);
    if (size < 0) {
        throw std::runtime_error(utf8proc_errmsg(size));
    }
    std::string result(reinterpret_cast<const char*>(mapped), static_cast<std::size_t>(size));
    std::free(mapped);
    return result;
}

bool hasCharacterPrefix(TextView text, TextView prefix) {
    const auto decomposedCharacters = [](TextView whole) {
        std::vector<std::string> result;
        for (const CodePoints& character : characters(whole)) {
            Text units;
            for (const char32_t codePoint : character) {
                append(units, codePoint);
            }
            result.push_back(decomposed(units));
        }
        return result;
    };
    const auto ofText = decomposedCharacters(text);
    const auto ofPrefix = decomposedCharacters(prefix);
    return ofPrefix.size() <= ofText.size() && std::equal(ofPrefix.begin(), ofPrefix.end(), ofText.begin());
}

std::string utf8(TextView text) {
    std::string bytes;
    for (const char32_t codePoint : codePoints(text)) {
        appendEncoded(bytes, codePoint);
    }
    return bytes;
}

Decoded decodeUtf8(std::string_view bytes) {
    Decoded result;
    while (!bytes.empty()) {
        std::size_t longest = 1;
        bool isComplete = false;
        for (const Form& form : forms()) {
            const std::size_t count = matchingByteCount(form, bytes);
            longest = std::max(longest, count);
            isComplete = isComplete || count == form.ranges.size();
        }
        append(result.text, isComplete ? codePointOf(bytes.substr(0, longest)) : 0xFFFD);
        result.isValid = result.isValid && isComplete;
        bytes.remove_prefix(longest);
    }
    return result;
}

}  // namespace lomaris::test::reference
