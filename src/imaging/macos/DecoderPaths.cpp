#include "imaging/DecoderPaths.h"

#include <string>
#include <vector>

namespace quorvantis {

std::vector<std::string> imageDecoderPaths(const std::string&) {
    return {};
}

}  // namespace quorvantis
