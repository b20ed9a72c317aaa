#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvantis {

/// The value of a JSON number; empty unless it is an integer of 64 bits. Computed from the digits, without
/// rounding: 9007199254740993.0 and 1.5e1 are integers, 1.5 and 1e30 are not.
std::optional<std::int64_t> integerFromNumberText(std::string_view text);

/// Whether the number is within the range of double.
bool isWithinDouble(std::string_view text);

/// The nearest double; empty if the number exceeds the range of double. Whatever the locale, like the next
/// one.
std::optional<double> doubleFromNumberText(std::string_view text);

/// Formats a finite value with 15, 16 or 17 significant digits: the fewest that are read back as the same
/// double.
std::string shortestNumberText(double value);

}  // namespace quorvantis
