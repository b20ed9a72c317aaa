#pragma once

#include <compare>
#include <cstdint>

namespace quorvantis {

/// A point in time, in seconds since 2001-01-01T00:00:00Z.
struct Date {
    double secondsSinceReferenceDate = 0;

    static Date now();
    /// Converts a Unix time, in seconds since 1970-01-01T00:00:00Z.
    static Date sinceEpoch(std::int64_t seconds);

    friend auto operator<=>(const Date&, const Date&) = default;
};

}  // namespace quorvantis
