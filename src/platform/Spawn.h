#pragma once

#include <spawn.h>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace quorvantis::platform {

/// Owns a child process, or none. The destructor waits for it to end and reaps it. SIGCHLD must not be
/// ignored.
class Child {
  public:
    Child() = default;
    explicit Child(pid_t id) : id_(id) {}
    Child(Child&& other) noexcept : id_(std::exchange(other.id_, 0)) {}
    Child& operator=(Child&& other) noexcept {
        std::swap(id_, other.id_);
        return *this;
    }
    ~Child();

    pid_t id() const { return id_; }  // 0 if there is none
    /// Sends SIGKILL. Does nothing if there is no child.
    void kill() const;
    /// Waits for the child to end and reaps it; afterwards there is none. Returns its exit status, or the
    /// number of the signal that killed it. There must be a child.
    int wait();

  private:
    pid_t id_ = 0;
};

/// Describes a child process to start: its program and everything that it inherits.
struct Spawn {
    static constexpr int nullDevice = -1;

    std::string executable;                // a path; PATH is not searched
    std::vector<std::string> arguments;    // without the program's own name
    std::vector<std::string> environment;  // NAME=value
    /// The descriptors that become 0, 1, 2 and so on in the child; `nullDevice` opens /dev/null. The child
    /// gets no others.
    std::vector<int> descriptors;

    /// Starts the process with no signals ignored or blocked. Throws std::system_error.
    Child start() const;
};

/// Restricts a child to the descriptors below `count`, which its file actions must create. Call it last: it
/// adds to the actions and to the flags.
void inheritOnly(int count, posix_spawn_file_actions_t& actions, posix_spawnattr_t& attributes);

}  // namespace quorvantis::platform
