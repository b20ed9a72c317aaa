#include <gtest/gtest.h>

#include "integration/ToolRoles.h"

/// The test program also plays the tools that its process tests run, when its first argument says so.
int main(int count, char** arguments) {
    if (count > 2 && std::string_view(arguments[1]) == "--tool")
        return quorvantis::playTool({arguments + 2, arguments + count});
    testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
