#include "simulator/base64.h"

#include <cstddef>
#include <cstdint>

namespace lomaris::simulator {
namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string base64Of(std::string_view bytes) {
    std::string encoded;
    for (std::size_t start = 0; start < bytes.size(); start += 3) {
        const std::string_view group = bytes.substr(start, 3);
        std::uint32_t bits = 0;
        for (std::size_t index = 0; index < 3; ++index) {
            bits = bits << 8U | (index < group.size() ? static_cast<unsigned char>(group[index]) : 0U);
        }
        for (std::size_t digit = 0; digit < 4; ++digit) {
            encoded += digit <= group.size() ? alphabet[bits >> (18U - 6U * digit) & 0x3fU] : '=';
        }
    }
    return encoded;
}

std::optional<std::string> bytesOfBase64(std::string_view encoded) {
    if (encoded.size() % 4 != 0) {
        return std::nullopt;
    }
    const std::size_t padding = encoded.ends_with("==") ? 2 : encoded.ends_with('=') ? 1 : 0;
    std::string bytes;
    for (std::size_t start = 0; start < encoded.size(); start += 4) {
        const bool isLast = start + 4 == encoded.size();
        const std::size_t digits = isLast ? 4 - padding : 4;
        std::uint32_t bits = 0;
        for (std::size_t digit = 0; digit < 4; ++digit) {
            const std::size_t position = digit < digits ? alphabet.find(encoded[start + digit]) : 0;
            if (position == std::string_view::npos) {
                return std::nullopt;
            }
            bits = bits << 6U | static_cast<std::uint32_t>(position);
        }
        for (std::size_t index = 0; index + 1 < digits; ++index) {
            bytes += static_cast<char>(bits >> (16U - 8U * index) & 0xffU);
        }
    }
    return bytes;
}

}  // namespace lomaris::simulator
