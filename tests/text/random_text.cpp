#include "tests/text/random_text.h"

#include <array>
#include <cstdio>

namespace lomaris::test {

namespace {

constexpr std::array<char32_t, 96> interesting{
    0x0D,   0x0A,   0x00,   0x09,   0x7F,    0x85,    0x61,    0x65,    0x20,    0xA9,    0xAD,    0xC5,
    0xE9,   0x300,  0x301,  0x308,  0x316,   0x323,   0x327,   0x334,   0x344,   0x345,   0x34F,   0x340,
    0x37E,  0x5B0,  0x5B4,  0x600,  0x6DD,   0x903,   0x915,   0x930,   0x937,   0x93C,   0x93F,   0x94D,
    0x951,  0x958,  0x995,  0x9CD,  0x9BE,   0x9DC,   0xA95,   0xACD,   0xB15,   0xB4D,   0xB5C,   0xC15,
    0xC4D,  0xC55,  0xD15,  0xD4D,  0xD4E,   0xBCD,   0xB95,   0xDCA,   0xDDD,   0xE33,   0xE48,   0xF73,
    0xFB2,  0x1100, 0x1161, 0x11A8, 0x1025,  0x102E,  0x1E9B,  0x1EAD,  0x1FEF,  0x200B,  0x200C,  0x200D,
    0x2028, 0x20E3, 0x2126, 0x212B, 0x2764,  0xFE0F,  0xFEFF,  0xFFFD,  0xAC00,  0xAC01,  0x4E00,  0xF900,
    0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0x1F1E6, 0x1F1FF, 0x1F468, 0x1F3FD, 0x1D15F, 0x110BA, 0x110BD, 0x2FA1D,
};

}  // namespace

std::size_t RandomTexts::below(std::size_t bound) { return generator_() % bound; }

char32_t RandomTexts::anyCodePoint() {
    // Half are below U+3000, a range in which nearly every code point is assigned.
    const std::size_t bound = below(2) == 0 ? 0x3000 : 0x110000;
    return static_cast<char32_t>(below(bound));
}

Text RandomTexts::next(std::size_t maximumPieces) {
    Text text;
    for (std::size_t pieces = below(maximumPieces + 1); pieces > 0; --pieces) {
        switch (below(8)) {
            case 0:
                text.append(below(70), u'x');
                break;
            case 1:
                text += u"\r\n";
                break;
            case 2:
                append(text, anyCodePoint());
                break;
            default:
                append(text, interesting.at(below(interesting.size())));
        }
    }
    return text;
}

std::string RandomTexts::nextBytes(std::size_t maximumPieces) {
    static constexpr std::array<unsigned char, 20> edges{0x00, 0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC1,
                                                         0xC2, 0xDF, 0xE0, 0xED, 0xEF, 0xF0, 0xF3, 0xF4, 0xF5, 0xFF};
    static constexpr std::array<std::string_view, 6> wellFormed{
        "\u00e9", "\u20ac", "\u4e16", "\U0001f469", "\ud7ff", "\U0010ffff",
    };
    std::string bytes;
    for (std::size_t pieces = below(maximumPieces + 1); pieces > 0; --pieces) {
        switch (below(4)) {
            case 0:
                bytes.append(below(40), 'x');
                break;
            case 1:
                bytes.push_back(static_cast<char>(edges.at(below(edges.size()))));
                break;
            default:
                bytes += wellFormed.at(below(wellFormed.size()));
        }
    }
    return bytes;
}

void append(Text& text, char32_t codePoint) {
    if (codePoint < 0x10000) {
        text.push_back(static_cast<char16_t>(codePoint));
        return;
    }
    text.push_back(static_cast<char16_t>(0xD7C0 + codePoint / 0x400));
    text.push_back(static_cast<char16_t>(0xDC00 + codePoint % 0x400));
}

std::string unitsOf(TextView text) {
    std::string result;
    for (const char16_t unit : text) {
        std::array<char, 8> digits{};
        std::snprintf(digits.data(), digits.size(), "%04X ", static_cast<unsigned>(unit));
        result += digits.data();
    }
    return result;
}

std::string hexOf(std::string_view bytes) {
    std::string result;
    for (const char byte : bytes) {
        std::array<char, 8> digits{};
        std::snprintf(digits.data(), digits.size(), "%02X ", static_cast<unsigned>(static_cast<unsigned char>(byte)));
        result += digits.data();
    }
    return result;
}

}  // namespace lomaris::test
