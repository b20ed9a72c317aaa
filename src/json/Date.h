#pragma once

#include <compare>
#include <cstdint>

namespace quorvantis {

/// A point in time: seconds, with fraction, since 2001-01-01T00:00:00Z.
struct Date {
    double secondsSinceReferenceDate = 0;

    static Date now();
    /// The time so many seconds after 1970-01-01T00:00:00Z.
    static Date sinceEpoch(std::int64_t seconds);

    friend auto operator<=>(const Date&, const Date&) = default;
};

}  // namespace quorvantis
