#pragma once

#include "text/text.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lomaris {

/// Reads a text as the code points of its canonical decomposition, marks in canonical order, without ever holding more
/// of it than one code point and the marks behind it. Half a surrogate pair reads as U+FFFD.
///
/// Two texts are canonically equivalent when their readers answer the same. The text is borrowed and must outlive the
/// reader.
class CanonicalReader {
public:
    /// What `next` answers behind the last code point.
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
