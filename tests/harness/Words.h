#pragma once

#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace quorvantis::harness {

/// A dense table's cases: what white space separates.
inline std::vector<std::string> words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

}  // namespace quorvantis::harness
