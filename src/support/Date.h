#pragma once

#include <compare>

namespace quorvantis {

/// A point in time: seconds, with fraction, since 2001-01-01T00:00:00Z.
struct Date {
    double secondsSinceReferenceDate = 0;

    static Date now();

    friend auto operator<=>(const Date&, const Date&) = default;
};

}  // namespace quorvantis
