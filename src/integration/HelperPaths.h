#pragma once

#include <string>

namespace quorvantis {

/// Absolute paths of the files and folders that the program and the desktop application share.
struct HelperPaths {
    std::string appSupport;    // folder
    std::string integrations;  // folder
    std::string requests;      // folder of pairing requests
    std::string agents;        // folder of manifests and state files
    std::string database;      // the history's database file
    std::string socket;        // the broker's Unix domain socket

    /// Paths below "Library/Application Support/Quorvantis" in the user's home folder, or in testing mode
    /// below the value of QUORVANTIS_APP_SUPPORT, if it is set. Creates no folder and never fails.
    HelperPaths();
};

/// Whether QUORVANTIS_TESTING is "1" at this moment. Only then does QUORVANTIS_APP_SUPPORT count.
bool isTestingMode();

}  // namespace quorvantis
