#pragma once

#include <spawn.h>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace quorvantis::platform {

/// A child process that was started, or none. It is waited for when this goes, so that the system forgets it;
/// SIGCHLD must not be ignored.
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

    pid_t id() const { return id_; }  // 0 when there is none
    /// Ends it by SIGKILL, if there is one.
    void kill() const;
    /// Waits for it to end. Answers its exit status, or the number of the signal that killed it. From then on
    /// there is none.
    int wait();

  private:
    pid_t id_ = 0;
};

/// A child process to be: what it runs, and all that it inherits.
struct Spawn {
    static constexpr int nullDevice = -1;

    std::string executable;                // its path; it is not searched for
    std::vector<std::string> arguments;    // without the program's own name
    std::vector<std::string> environment;  // NAME=value
    /// The descriptors that become 0, 1, 2 and so on in the child, or `nullDevice`. It gets no others.
    std::vector<int> descriptors;

    /// Starts it, with no signal ignored or blocked. Throws std::system_error.
    Child start() const;
};

/// Makes a child that is started with these inherit the first `count` descriptors, which its file actions
/// make, and no others. Call it last: it adds to the actions and to the flags that were set before.
void inheritOnly(int count, posix_spawn_file_actions_t& actions, posix_spawnattr_t& attributes);

}  // namespace quorvantis::platform
