#include "json/json_integer.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <string>
#include <system_error>

namespace lomaris {

namespace {

/// A decimal number: `digits`, an integer with an optional minus sign, times 10 to the power of `exponent`.
struct Decimal {
    std::string digits;
    std::int64_t exponent = 0;
};

/// Removes the digits at the start of `rest` and returns them.
std::string_view takeDigits(std::string_view& rest) {
    const std::size_t length = std::min(rest.find_first_not_of("0123456789"), rest.size());
    const std::string_view digits = rest.substr(0, length);
    rest.remove_prefix(length);
    return digits;
}

bool takeByte(std::string_view& rest, char byte) {
    if (rest.empty() || rest.front() != byte) {
        return false;
    }
    rest.remove_prefix(1);
    return true;
}

std::optional<std::int64_t> integerFrom(std::string_view digits) {
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size()) {
        return std::nullopt;
    }
    return value;
}

/// Moves "." and the digits after it from `rest` to `decimal`. Returns false if it is ill-formed; it may be missing.
bool takeFraction(std::string_view& rest, Decimal& decimal) {
    if (!takeByte(rest, '.')) {
        return true;
    }
    const std::string_view fraction = takeDigits(rest);
    decimal.digits += fraction;
    decimal.exponent -= static_cast<std::int64_t>(fraction.size());
    return !fraction.empty();
}

/// Moves the exponent from `rest` to `decimal`. Returns false if it is ill-formed; it may be missing.
bool takeExponent(std::string_view& rest, Decimal& decimal) {
    if (!takeByte(rest, 'e') && !takeByte(rest, 'E')) {
        return true;
    }
    const bool isNegative = takeByte(rest, '-');
    if (!isNegative) {
        takeByte(rest, '+');
    }
    const std::string_view digits = takeDigits(rest);
    // Keeps the sum with the number of digits in range. No number has enough digits to compensate for this exponent.
    constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max() / 4;
    const std::int64_t exponent = std::min(integerFrom(digits).value_or(greatest), greatest);
    decimal.exponent += isNegative ? -exponent : exponent;
    return !digits.empty();
}

/// Parses a number by the JSON grammar, which has no leading zeros and requires digits on both sides of the point.
std::optional<Decimal> decimalFrom(std::string_view written) {
    Decimal decimal;
    if (takeByte(written, '-')) {
        decimal.digits.push_back('-');
    }
    const std::string_view whole = takeDigits(written);
    if (whole.empty() || (whole.size() > 1 && whole.front() == '0')) {
        return std::nullopt;
    }
    decimal.digits += whole;
    const bool isWellFormed = takeFraction(written, decimal) && takeExponent(written, decimal) && written.empty();
    return isWellFormed ? std::optional(decimal) : std::nullopt;
}

/// Independent of the locale, because the number is written without a decimal point.
double nearestDouble(const Decimal& decimal) {
    return std::strtod((decimal.digits + "e" + std::to_string(decimal.exponent)).c_str(), nullptr);
}

/// Computes the exact value; nullopt if it is not an integer or is out of range.
std::optional<std::int64_t> exactInteger(Decimal decimal) {
    while (decimal.exponent < 0 && decimal.digits.back() == '0') {
        decimal.digits.pop_back();
        ++decimal.exponent;
    }
    if (decimal.exponent < 0 || decimal.exponent > std::numeric_limits<std::int64_t>::digits10) {
        return std::nullopt;
    }
    return integerFrom(decimal.digits.append(static_cast<std::size_t>(decimal.exponent), '0'));
}

}  // namespace

std::optional<std::int64_t> decodeJsonInteger(std::string_view written) {
    const auto decimal = decimalFrom(written);
    if (!decimal) {
        return std::nullopt;
    }
    if (written.find_first_of(".eE") == std::string_view::npos) {
        return integerFrom(written);
    }
    const double nearest = nearestDouble(*decimal);
    constexpr double limit = 9223372036854775808.0;  // 2^63, the lowest double above the range
    if (std::trunc(nearest) != nearest || nearest < -limit || nearest >= limit) {
        return std::nullopt;
    }
    // At and above 2^53 not every integer is a double, so the digits are evaluated exactly.
    constexpr double greatestExact = 9007199254740992.0;  // 2^53
    return std::abs(nearest) < greatestExact ? static_cast<std::int64_t>(nearest) : exactInteger(*decimal);
}

}  // namespace lomaris
