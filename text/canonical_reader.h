#pragma once

#include "text/text.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lomaris {

/// Reads a text as the code points of its canonical decomposition, with marks in canonical order. It buffers only one
/// code point and the marks after it. Half a surrogate pair is read as U+FFFD.
///
/// Two texts are canonically equivalent if and only if their readers return the same code points. The text is borrowed
/// and must outlive the reader. Not thread-safe.
class CanonicalReader {
public:
    /// The value that `next` returns at the end of the text.
    static constexpr char32_t end = 0xFFFFFFFF;

    explicit CanonicalReader(TextView text) : text_(text) {}

    [[nodiscard]] char32_t next();

private:
    struct Decomposed {
        char32_t codePoint;
        std::uint8_t combiningClass;
    };

    [[nodiscard]] bool isMarkAhead() const;
    void readSegment();
    void appendDecomposition();
    void orderMarks();

    TextView text_;
    std::size_t position_ = 0;
    std::vector<Decomposed> segment_;
    std::size_t segmentPosition_ = 0;
};

}  // namespace lomaris
