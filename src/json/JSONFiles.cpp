#include "json/JSONFiles.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/stat.h>

#include "support/Files.h"
#include "support/HelperFailure.h"
#include "support/Paths.h"

namespace quorvantis::HelperIO {

void writeProtected(const std::string& path, std::string_view content, std::int16_t permissions) {
    replaceFile(path, content);
    if (permissions < 0) std::abort();
    if (chmod(path.c_str(), static_cast<mode_t>(permissions)) != 0)
        throw HelperFailure::configuration("Could not restrict permissions for " + lastPathComponent(path) +
                                           ".");
}

}  // namespace quorvantis::HelperIO
