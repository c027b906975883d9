#include "tests/support/vectors.h"

#include <cstdint>
#include <fstream>
#include <stdexcept>

namespace lomaris::test {

namespace {

int base64Digit(char character) {
    static constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const auto position = alphabet.find(character);
    if (position == std::string_view::npos) {
        throw std::runtime_error("not a Base64 digit: " + std::string(1, character));
    }
    return static_cast<int>(position);
}

}  // namespace

std::vector<Vector> readVectors(std::string_view name) {
    const std::string path = std::string(LOMARIS_VECTORS_DIRECTORY) + "/" + std::string(name) + ".jsonl";
    std::ifstream file(path);
    std::vector<Vector> vectors;
    std::string line;
    while (std::getline(file, line)) {
        vectors.push_back({static_cast<int>(vectors.size()) + 1, nlohmann::json::parse(line)});
    }
    if (vectors.empty()) {
        throw std::runtime_error("no vectors in " + path);
    }
    return vectors;
}

Text textOf(const nlohmann::json& codeUnits) {
    Text text;
    for (const auto& unit : codeUnits) {
        text.push_back(static_cast<char16_t>(unit.get<std::uint16_t>()));
    }
    return text;
}

std::string bytesOf(const nlohmann::json& base64) {
    const auto encoded = base64.get<std::string>();
    std::string bytes;
    std::uint32_t bits = 0;
    int bitCount = 0;
    for (const char character : encoded) {
        if (character == '=') {
            break;
        }
        bits = (bits << 6U) | static_cast<std::uint32_t>(base64Digit(character));
        bitCount += 6;
        if (bitCount >= 8) {
            bitCount -= 8;
            bytes.push_back(static_cast<char>((bits >> static_cast<std::uint32_t>(bitCount)) & 0xFFU));
        }
    }
    return bytes;
}

}  // namespace lomaris::test
