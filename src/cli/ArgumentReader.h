#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvantis {

/// The process's arguments, without the program's own name.
struct ArgumentReader {
    std::vector<std::string> values;

    /// The argument after the first one that equals `flag`, even if it looks like a flag; empty if there is
    /// none.
    std::optional<std::string> value(std::string_view flag) const {
        const auto found = std::find(values.begin(), values.end(), flag);
        if (found == values.end() || found + 1 == values.end()) return std::nullopt;
        return *(found + 1);
    }

    bool contains(std::string_view flag) const {
        return std::find(values.begin(), values.end(), flag) != values.end();
    }
};

}  // namespace quorvantis
