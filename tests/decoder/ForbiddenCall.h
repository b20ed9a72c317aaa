#pragma once

#include <functional>
#include <string>

namespace quorvantis::decoder {

/// Runs `act` in a traced child process. Returns the name of the system call for which a sandbox killed it,
/// or nothing when it ended in another way. With several threads, the latest call of each is named.
std::string forbiddenCall(const std::function<void()>& act);

/// The same of the decoder program at the path, with the picture of that file.
std::string forbiddenCall(const std::string& decoder, const std::string& picture);

}  // namespace quorvantis::decoder
