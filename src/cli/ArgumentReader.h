#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvantis {

/// The process arguments without the program's path.
struct ArgumentReader {
    std::vector<std::string> values;

    /// The argument right after the first one that equals `flag`, whatever it looks like; nothing when there
    /// is none.
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
