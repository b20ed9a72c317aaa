#pragma once

#include <string>

namespace quorvantis {

/// Where the program and the desktop application keep what they share, as absolute path texts.
struct HelperPaths {
    std::string appSupport;    // folder
    std::string integrations;  // folder
    std::string requests;      // folder of pairing requests
    std::string agents;        // folder of manifests and state files
    std::string database;      // the history's database file
    std::string socket;        // the broker's Unix domain socket

    /// Below the application-support folder in use: "Library/Application Support/Quorvantis" in the user's
    /// home folder, or in testing mode the value of QUORVANTIS_APP_SUPPORT. Makes no folder and never fails.
    HelperPaths();
};

/// Whether QUORVANTIS_TESTING is "1" at this moment. Only then can the environment redirect the program.
bool isTestingMode();

}  // namespace quorvantis
