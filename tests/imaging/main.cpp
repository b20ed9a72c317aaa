#include <filesystem>
#include <gtest/gtest.h>

#include "imaging/OtherRoles.h"

/// The test program also plays two programs of its process tests: a decoder, when that is its name, and a
/// program that identifies files, when its first argument says so.
int main(int count, char** arguments) {
    using namespace quorvantis;
    if (std::filesystem::path(arguments[0]).filename() == "quorvantis-image-decoder") return playDecoder();
    if (count > 2 && std::string_view(arguments[1]) == "--identify")
        return playIdentifier(arguments[2], {arguments + 3, arguments + count});
    testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
