#include <gtest/gtest.h>

#include "harness/Installation.h"

namespace quorvantis {

TEST(HomeFolderTest, HoldsTheApplicationSupportFolder) {
    harness::Installation installation("/Library/Application Support/Quorvantis");
    installation.credential += "//";  // which do not count
    installation.environment = {"QUORVANTIS_TESTING=true", "QUORVANTIS_APP_SUPPORT=/nowhere",
                                "HOME=" + installation.folder.path()};
    harness::ChildProcess(installation.launch()).expectEnd();
}

}  // namespace quorvantis
