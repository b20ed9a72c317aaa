#include "json/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace quorvantis {

namespace {

constexpr std::int64_t maximumDigits = 19;  // of a 64-bit integer

/// Saturates: no text is long enough for the difference to show.
std::int64_t parseExponent(std::string_view text) {
    constexpr std::int64_t maximum = 1'000'000'000'000'000;
    if (text.starts_with('+')) text.remove_prefix(1);
    std::int64_t exponent = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), exponent);
    if (result.ec == std::errc::result_out_of_range) return text.starts_with('-') ? -maximum : maximum;
    return std::clamp(exponent, -maximum, maximum);
}

/// digits * 10^exponent, without leading or trailing zeros.
struct Decimal {
    bool negative = false;
    std::string digits;
    std::int64_t exponent = 0;
};

Decimal parseDecimal(std::string_view text) {
    Decimal decimal;
    if (text.starts_with('-')) {
        decimal.negative = true;
        text.remove_prefix(1);
    }
    if (const auto e = text.find_first_of("eE"); e != text.npos) {
        decimal.exponent = parseExponent(text.substr(e + 1));
        text = text.substr(0, e);
    }
    const auto point = text.find('.');
    decimal.digits = text.substr(0, point);
    if (point != text.npos) {
        decimal.digits += text.substr(point + 1);
        decimal.exponent -= static_cast<std::int64_t>(text.size() - point - 1);
    }
    const auto kept = decimal.digits.find_last_not_of('0') + 1;
    decimal.exponent += static_cast<std::int64_t>(decimal.digits.size() - kept);
    decimal.digits.resize(kept);
    decimal.digits.erase(0, decimal.digits.find_first_not_of('0'));
    return decimal;
}

// The C library's functions for numbers use the decimal point of the locale that a program has set. Those of
// the standard library that do not are missing on macOS 13.
std::string_view decimalPoint() {
    return std::localeconv()->decimal_point;
}

std::string replaced(std::string text, std::string_view point, std::string_view replacement) {
    if (const auto place = text.find(point); place != text.npos)
        text.replace(place, point.size(), replacement);
    return text;
}

double toDouble(const std::string& text) {
    return std::strtod(text.c_str(), nullptr);
}

}  // namespace

std::optional<std::int64_t> integerFromNumberText(std::string_view text) {
    std::int64_t value = 0;
    if (text.find_first_of(".eE") == text.npos) {
        const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
        return result.ec == std::errc() ? std::optional(value) : std::nullopt;
    }
    const Decimal decimal = parseDecimal(text);
    if (decimal.digits.empty()) return 0;
    if (decimal.exponent < 0) return std::nullopt;
    if (static_cast<std::int64_t>(decimal.digits.size()) + decimal.exponent > maximumDigits)
        return std::nullopt;
    return integerFromNumberText((decimal.negative ? "-" : "") + decimal.digits +
                                 std::string(static_cast<std::size_t>(decimal.exponent), '0'));
}

bool isWithinDouble(std::string_view text) {
    constexpr std::size_t certainSize = 308;  // of a number without exponent: below 1e308
    const bool isCertain = text.size() <= certainSize && text.find_first_of("eE") == text.npos;
    return isCertain || doubleFromNumberText(text).has_value();
}

std::optional<double> doubleFromNumberText(std::string_view text) {
    const double value = toDouble(replaced(std::string(text), ".", decimalPoint()));
    return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::string shortestNumberText(double value) {
    std::array<char, 32> text;
    for (int digits = 15; digits <= 17; ++digits) {
        std::snprintf(text.data(), text.size(), "%.*g", digits, value);
        if (toDouble(text.data()) == value) break;
    }
    return replaced(text.data(), decimalPoint(), ".");
}

}  // namespace quorvantis
