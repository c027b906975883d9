#include "text/equality.h"

#include "text/canonical_reader.h"
#include "text/character_breaker.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace lomaris {

namespace {

/// Compares with memcmp because the standard comparison of UTF-16 strings compares one unit at a time.
bool haveSameUnits(TextView a, TextView b) {
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(char16_t)) == 0);
}

/// Returns a position at or before the first difference such that comparing the texts from there on is enough: the
/// start, or after an ASCII unit, which never composes or reorders with what precedes it.
std::size_t comparisonStart(TextView a, TextView b) {
    const std::size_t shorter = std::min(a.size(), b.size());
    const auto difference = std::mismatch(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(shorter), b.begin());
    auto start = static_cast<std::size_t>(difference.first - a.begin());
    while (start > 0 && a[start - 1] >= 0x80) {
        --start;
    }
    return start;
}

}  // namespace

bool canonicallyEqual(TextView a, TextView b) {
    if (haveSameUnits(a, b)) {
        return true;
    }
    const std::size_t start = comparisonStart(a, b);
    CanonicalReader readerA(a.substr(start));
    CanonicalReader readerB(b.substr(start));
    for (;;) {
        const char32_t next = readerA.next();
        if (next != readerB.next()) {
            return false;
        }
        if (next == CanonicalReader::end) {
            return true;
        }
    }
}

bool hasCharacterPrefix(TextView text, TextView prefix) {
    std::size_t position = 0;
    std::size_t prefixPosition = 0;
    while (prefixPosition < prefix.size()) {
        const std::size_t end = characterEnd(text, position);
        const std::size_t prefixEnd = characterEnd(prefix, prefixPosition);
        if (!canonicallyEqual(text.substr(position, end - position),
                              prefix.substr(prefixPosition, prefixEnd - prefixPosition))) {
            return false;
        }
        position = end;
        prefixPosition = prefixEnd;
    }
    return true;
}

}  // namespace lomaris
