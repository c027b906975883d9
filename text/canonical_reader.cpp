#include "text/canonical_reader.h"

#include "text/code_points.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>

namespace lomaris {

namespace {

/// The lowest code point that has a decomposition, and the lowest combining mark.
constexpr char32_t firstDecomposable = 0xC0;
constexpr char32_t firstMark = 0x300;

/// A full canonical decomposition.
struct Decomposition {
    std::array<utf8proc_int32_t, 8> codePoints{};
    std::size_t size = 0;
};

Decomposition decompose(char32_t codePoint) {
    Decomposition result;
    int unused = 0;
    const utf8proc_ssize_t size =
        utf8proc_decompose_char(static_cast<utf8proc_int32_t>(codePoint), result.codePoints.data(),
                                static_cast<utf8proc_ssize_t>(result.codePoints.size()), UTF8PROC_DECOMPOSE, &unused);
    // No decomposition is longer than four code points. The library returns an error only for an invalid code point.
    result.size = static_cast<std::size_t>(size);
    return result;
}

std::uint8_t combiningClassOf(utf8proc_int32_t codePoint) {
    return static_cast<std::uint8_t>(utf8proc_get_property(codePoint)->combining_class);
}

}  // namespace

char32_t CanonicalReader::next() {
    if (segmentPosition_ == segment_.size()) {
        if (position_ == text_.size()) {
            return end;
        }
        // A code point below `firstDecomposable` does not decompose. Marks after it are ordered in a segment of their
        // own.
        if (text_[position_] < firstDecomposable) {
            return text_[position_++];
        }
        readSegment();
    }
    return segment_[segmentPosition_++].codePoint;
}

/// True if the decomposition of the next code point begins with a mark. Marks can be reordered among themselves but not
/// across any other code point, so a segment ends before the first code point that does not begin with a mark.
bool CanonicalReader::isMarkAhead() const {
    if (position_ == text_.size() || text_[position_] < firstMark) {
        return false;
    }
    return combiningClassOf(decompose(codePointAt(text_, position_).value).codePoints[0]) != 0;
}

void CanonicalReader::readSegment() {
    segment_.clear();
    segmentPosition_ = 0;
    do {
        appendDecomposition();
    } while (isMarkAhead());
    orderMarks();
}

void CanonicalReader::appendDecomposition() {
    const CodePoint codePoint = codePointAt(text_, position_);
    position_ += codePoint.units;
    const Decomposition decomposition = decompose(codePoint.value);
    for (std::size_t i = 0; i < decomposition.size; ++i) {
        const utf8proc_int32_t part = decomposition.codePoints[i];
        segment_.push_back({static_cast<char32_t>(part), combiningClassOf(part)});
    }
}

/// Sorts each run of marks by combining class; marks of the same class keep their order. Uses a merge sort because a
/// text may contain runs of marks of any length.
void CanonicalReader::orderMarks() {
    const auto isMark = [](const Decomposed& part) { return part.combiningClass != 0; };
    const auto byClass = [](const Decomposed& a, const Decomposed& b) { return a.combiningClass < b.combiningClass; };
    for (auto run = segment_.begin(); run != segment_.end();) {
        const auto first = std::find_if(run, segment_.end(), isMark);
        const auto last = std::find_if_not(first, segment_.end(), isMark);
        if (!std::is_sorted(first, last, byClass)) {
            std::stable_sort(first, last, byClass);
        }
        run = last;
    }
}

}  // namespace lomaris
