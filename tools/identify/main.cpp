#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "imaging/AttachmentIdentity.h"
#include "support/HelperIO.h"

using quorvantis::AttachmentIdentity;

namespace {

std::string line(const AttachmentIdentity& identity) {
    if (!identity.pixelHash) return "- -";
    return std::to_string(*identity.pixelWidth) + "x" + std::to_string(*identity.pixelHeight) + " " +
           *identity.pixelHash;
}

}  // namespace

/// Prints a line for each file named: "<pixelWidth>x<pixelHeight> <pixelHash> <file>", or "- - <file>" for
/// one that is no picture.
int main(int count, char** arguments) {
    try {
        for (const std::string& path : std::vector<std::string>(arguments + 1, arguments + count))
            std::printf("%s %s\n", line(quorvantis::HelperIO::attachmentIdentity(path)).c_str(),
                        path.c_str());
        return 0;
    } catch (const std::exception& failure) {
        quorvantis::HelperIO::error(failure.what());
        return 1;
    }
}
