#include "accessibility/model/json_integer.h"

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

/// A number without a decimal point: an optional minus sign and digits, times a power of ten.
struct Decimal {
    std::string digits;
    std::int64_t exponent = 0;
};

/// Takes the digits that `rest` begins with.
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

/// Takes "." and the digits behind it over into `decimal`. Answers whether the fraction is well-formed; none is.
bool takeFraction(std::string_view& rest, Decimal& decimal) {
    if (!takeByte(rest, '.')) {
        return true;
    }
    const std::string_view fraction = takeDigits(rest);
    decimal.digits += fraction;
    decimal.exponent -= static_cast<std::int64_t>(fraction.size());
    return !fraction.empty();
}

/// Takes the exponent over into `decimal`. Answers whether it is well-formed; none is.
bool takeExponent(std::string_view& rest, Decimal& decimal) {
    if (!takeByte(rest, 'e') && !takeByte(rest, 'E')) {
        return true;
    }
    const bool isNegative = takeByte(rest, '-');
    if (!isNegative) {
        takeByte(rest, '+');
    }
    const std::string_view digits = takeDigits(rest);
    // No number of digits that fits into memory outweighs the greatest exponent that counts.
    constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max() / 4;
    const std::int64_t exponent = std::min(integerFrom(digits).value_or(greatest), greatest);
    decimal.exponent += isNegative ? -exponent : exponent;
    return !digits.empty();
}

/// The number by the grammar of JSON, which knows no leading zeros and no number that begins or ends with its point.
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

/// Without a decimal point there is nothing in it that depends on the locale.
double nearestDouble(const Decimal& decimal) {
    return std::strtod((decimal.digits + "e" + std::to_string(decimal.exponent)).c_str(), nullptr);
}

/// The number to the last digit, where it is an integer.
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
    constexpr double limit = 9223372036854775808.0;  // 2^63, the first double above the range
    if (std::trunc(nearest) != nearest || nearest < -limit || nearest >= limit) {
        return std::nullopt;
    }
    // From here on doubles are further apart than integers, and only the digits tell which one is meant.
    constexpr double greatestExact = 9007199254740992.0;  // 2^53
    return std::abs(nearest) < greatestExact ? static_cast<std::int64_t>(nearest) : exactInteger(*decimal);
}

}  // namespace lomaris
