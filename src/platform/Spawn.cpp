#include "platform/Spawn.h"

#include <csignal>
#include <errno.h>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/Descriptors.h"

namespace quorvantis::platform {

namespace {

/// The file actions and attributes for posix_spawn: the child gets the descriptors as 0, 1, 2 and so on,
/// default signal handlers and an empty signal mask.
class SpawnAttributes {
  public:
    explicit SpawnAttributes(const std::vector<int>& descriptors)
        : descriptorCount_(static_cast<int>(descriptors.size())) {
        posix_spawn_file_actions_init(&actions_);
        posix_spawnattr_init(&attributes_);
        int target = 0;
        for (const int descriptor : descriptors) pass(descriptor, target++);
        resetSignals();
        inheritOnly(descriptorCount_, actions_, attributes_);
    }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;
    ~SpawnAttributes() {
        posix_spawnattr_destroy(&attributes_);
        posix_spawn_file_actions_destroy(&actions_);
    }

    const posix_spawn_file_actions_t* actions() const { return &actions_; }
    const posix_spawnattr_t* attributes() const { return &attributes_; }

  private:
    void pass(int descriptor, int target) {
        if (descriptor == Spawn::nullDevice)
            posix_spawn_file_actions_addopen(&actions_, target, "/dev/null", O_RDWR, 0);
        else
            posix_spawn_file_actions_adddup2(&actions_, source(descriptor), target);
    }

    /// Returns the descriptor, or a duplicate if its number is one of the targets, which the file actions
    /// overwrite one by one.
    int source(int descriptor) {
        if (descriptor >= descriptorCount_) return descriptor;
        Descriptor copy(fcntl(descriptor, F_DUPFD_CLOEXEC, descriptorCount_));
        if (!copy) throw std::system_error(errno, std::generic_category());
        return copies_.emplace_back(std::move(copy)).get();
    }

    void resetSignals() {
        sigset_t signals;
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&attributes_, &signals);
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes_, &signals);
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }

    int descriptorCount_;
    std::vector<Descriptor> copies_;
    posix_spawn_file_actions_t actions_;
    posix_spawnattr_t attributes_;
};

std::vector<char*> pointers(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (const std::string& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

Child Spawn::start() const {
    const SpawnAttributes spawnAttributes(descriptors);
    std::vector<std::string> argv = arguments;
    argv.insert(argv.begin(), executable);
    pid_t child = -1;
    const int code =
        posix_spawn(&child, executable.c_str(), spawnAttributes.actions(), spawnAttributes.attributes(),
                    pointers(argv).data(), pointers(environment).data());
    if (code != 0) throw std::system_error(code, std::generic_category());
    return Child(child);
}

Child::~Child() {
    if (id_ > 0) wait();
}

void Child::kill() const {
    if (id_ > 0) ::kill(id_, SIGKILL);
}

int Child::wait() {
    int status = 0;
    while (waitpid(id_, &status, 0) < 0 && errno == EINTR) {}
    id_ = 0;
    return WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace quorvantis::platform
