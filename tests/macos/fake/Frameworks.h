#pragma once

#include <string>

/// A stand-in for the frameworks of macOS, to run the sources for macOS on Linux. It checks how it is called
/// and ends the program at a misuse; it proves nothing of what the real ones answer.
namespace fake {

/// Objects created and not yet released, and open autorelease pools.
long liveObjects();

/// The notifications posted since the last call, a line each: "<name> <object> <options>".
std::string takePosted();

}  // namespace fake
