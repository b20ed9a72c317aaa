#include "imaging/DecoderPaths.h"

#include <string>
#include <string_view>
#include <vector>

#include "support/Paths.h"

namespace quorvantis {

// An installation elsewhere writes its own prefix over this one, in the archive.
static constexpr std::string_view installedPrefix = QUORVANTIS_PREFIX;

std::vector<std::string> imageDecoderPaths(const std::string& executable) {
    const std::string folder = parentPath(executable);
    std::vector<std::string> paths;
    for (const std::string& place : {folder, joinedPath(folder, "../libexec/quorvantis"),
                                     joinedPath(installedPrefix, "libexec/quorvantis")})
        paths.push_back(joinedPath(place, "quorvantis-image-decoder"));
    return paths;
}

}  // namespace quorvantis
