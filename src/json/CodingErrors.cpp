#include "json/CodingErrors.h"

#include <stdexcept>
#include <string>

namespace quorvantis {

std::string CodingPath::text() const {
    if (!parent) return {};
    const std::string before = parent->text();
    if (key.empty()) return before + "[" + std::to_string(index) + "]";
    return before.empty() ? std::string(key) : before + "." + std::string(key);
}

DecodingError DecodingError::missing(const CodingPath& path) {
    return {"The data couldn’t be read because it is missing.", path.text()};
}

DecodingError DecodingError::mistyped(const CodingPath& path) {
    return {"The data couldn’t be read because it isn’t in the correct format.", path.text()};
}

EncodingError::EncodingError()
    : std::runtime_error("The data couldn’t be written because it isn’t in the correct format.") {}

}  // namespace quorvantis
