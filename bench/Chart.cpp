#include "Chart.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace quorvantis::bench {

namespace {

constexpr double width = 400, height = 240, margin = 50, steps = 4;

/// The least number of few digits that is not below the value: a distance of ticks.
double rounded(double value) {
    const double power = std::pow(10, std::floor(std::log10(value)));
    for (const double factor : {1.0, 1.5, 2.0, 2.5, 3.0, 4.0, 5.0, 8.0})
        if (factor * power >= value) return factor * power;
    return 10 * power;
}

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", value);
    return text;
}

std::string text(double x, double y, const std::string& anchor, const std::string& content) {
    return "<text x='" + number(x) + "' y='" + number(y) + "' text-anchor='" + anchor + "'>" + content +
           "</text>\n";
}

std::string line(double x1, double y1, double x2, double y2) {
    return "<path stroke='#ccc' d='M" + number(x1) + " " + number(y1) + "L" + number(x2) + " " + number(y2) +
           "'/>\n";
}

std::string drawn(const Chart& chart, double left, double top) {
    const double right = left + width - 2 * margin + 20, bottom = top + height - 2 * margin + 10;
    double highest = 0;
    for (const auto& point : chart.points) highest = std::max(highest, point.up);
    const double up = rounded(highest / steps), across = rounded(chart.points.back().across / steps);
    const auto x = [&](double value) { return left + (right - left) * value / (across * steps); };
    const auto y = [&](double value) { return bottom - (bottom - top) * value / (up * steps); };

    std::string svg = text(left, top - 12, "start", "<tspan font-weight='bold'>" + chart.title + "</tspan>");
    for (int step = 0; step <= steps; ++step) {
        svg += line(left, y(step * up), right, y(step * up)) +
               text(left - 6, y(step * up) + 4, "end", number(step * up));
        svg += text(x(step * across), bottom + 16, "middle", number(step * across));
    }
    svg += text(right, bottom + 32, "end", chart.across) + "<polyline fill='none' stroke='#06c' points='";
    for (const auto& point : chart.points) svg += number(x(point.across)) + "," + number(y(point.up)) + " ";
    svg += "'/>\n";
    for (const auto& point : chart.points)
        svg += "<circle cx='" + number(x(point.across)) + "' cy='" + number(y(point.up)) +
               "' r='2.5' fill='#06c'/>\n";
    return svg;
}

}  // namespace

std::string drawn(const std::vector<Chart>& charts) {
    const auto rows = static_cast<double>((charts.size() + 1) / 2);
    std::string svg = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 " + number(2 * width) + " " +
                      number(rows * height) +
                      "' font-family='sans-serif' font-size='11'>\n"
                      "<rect width='100%' height='100%' fill='#fff'/>\n";
    for (std::size_t i = 0; i < charts.size(); ++i)
        svg += drawn(charts[i], margin + static_cast<double>(i % 2) * width,
                     margin - 10 + static_cast<double>(i / 2) * height);
    return svg + "</svg>\n";
}

}  // namespace quorvantis::bench
