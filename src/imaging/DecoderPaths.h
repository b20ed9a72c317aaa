#pragma once

#include <string>
#include <vector>

namespace quorvantis {

/// Where the program with this executable looks for the image decoder, in this order: beside the executable,
/// in "../libexec/quorvantis" from there, and where this library was installed. It uses the first that is
/// executable. Empty on macOS, where the system decodes pictures in the program's own process.
std::vector<std::string> imageDecoderPaths(const std::string& executable);

}  // namespace quorvantis
