#pragma once

#include <memory>

namespace quorvantis::standin {

/// Receives the notification that a client session has changed. Where the system delivers none, as without a
/// session bus, nothing arrives, and the records have to be read from time to time.
class SessionSignals {
  public:
    SessionSignals();
    ~SessionSignals();

    /// Becomes ready for reading when a notification may have arrived; -1 when there is nothing to poll, and
    /// `take` has to be called from time to time.
    int descriptor() const;
    /// Consumes the notifications that have arrived. Returns whether there was one.
    bool take();

  private:
    struct Connection;
    std::unique_ptr<Connection> connection_;
};

}  // namespace quorvantis::standin
