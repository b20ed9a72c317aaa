#pragma once

#include <string>
#include <vector>

namespace quorvantis::bench {

/// A line through points, both axes linear and from zero.
struct Chart {
    struct Point {
        double across, up;
    };
    std::string title, across;
    std::vector<Point> points;  // in order of `across`
};

/// An SVG picture of the charts, two in a row.
std::string drawn(const std::vector<Chart>& charts);

}  // namespace quorvantis::bench
