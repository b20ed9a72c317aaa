#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvantis {

/// The value of a JSON number's text when it is integral and fits 64 bits, decided on the text alone so that
/// no rounding enters: 9007199254740993.0 and 1.5e1 are integers, 1.5 and 1e30 are not. The exponent must fit
/// 32 bits.
std::optional<std::int64_t> integerFromNumberText(std::string_view text);

/// The nearest double; nothing beyond the range of double.
std::optional<double> doubleFromNumberText(std::string_view text);

/// The shortest of the texts with 15, 16 and 17 significant digits that reads back as the same double. The
/// value must be finite.
std::string shortestNumberText(double value);

}  // namespace quorvantis
