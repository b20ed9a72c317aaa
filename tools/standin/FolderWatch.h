#pragma once

#include <memory>
#include <string>
#include <vector>

namespace quorvantis::standin {

/// Tells when files in folders may have changed: on Linux by inotify(7), on macOS once a second.
class FolderWatch {
  public:
    FolderWatch();
    ~FolderWatch();

    /// Watches these folders, but not what is below them, besides those watched already. On Linux the system
    /// may allow fewer than there are; changes in the others are then not seen. Returns whether there was a
    /// new one: what happened in it before is not told.
    bool add(const std::vector<std::string>& folders);

    /// Becomes ready for reading when there may have been a change; -1 when there is nothing to poll, and
    /// `take` has to be called from time to time.
    int descriptor() const;
    /// Whether there may have been a change since the last call.
    bool take();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace quorvantis::standin
