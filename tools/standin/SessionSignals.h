#pragma once

#include <memory>

namespace quorvantis::standin {

/// Listens for the notification that a client session has changed. Where there is none to be had, it stays
/// silent, and its user must look by itself now and then.
class SessionSignals {
  public:
    SessionSignals();
    ~SessionSignals();

    /// Ready for reading when there may be a notification; -1 when nothing tells: then `take` finds out.
    int descriptor() const;
    /// Takes the notifications that have arrived. True when there was one.
    bool take();

  private:
    struct Connection;
    std::unique_ptr<Connection> connection_;
};

}  // namespace quorvantis::standin
