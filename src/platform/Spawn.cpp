#include "platform/Spawn.h"

#include <csignal>
#include <errno.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>

#include "platform/Descriptors.h"

namespace quorvantis::platform {

namespace {

/// What posix_spawn is told besides the program: the child's descriptors, and all signals as a program
/// expects them at its start.
class Conditions {
  public:
    explicit Conditions(const std::vector<int>& descriptors) : places_(static_cast<int>(descriptors.size())) {
        posix_spawn_file_actions_init(&actions_);
        posix_spawnattr_init(&attributes_);
        int place = 0;
        for (const int descriptor : descriptors) give(descriptor, place++);
        resetSignals();
        inheritOnly(places_, actions_, attributes_);
    }
    Conditions(const Conditions&) = delete;
    Conditions& operator=(const Conditions&) = delete;
    ~Conditions() {
        posix_spawnattr_destroy(&attributes_);
        posix_spawn_file_actions_destroy(&actions_);
    }

    const posix_spawn_file_actions_t* actions() const { return &actions_; }
    const posix_spawnattr_t* attributes() const { return &attributes_; }

  private:
    void give(int descriptor, int place) {
        if (descriptor == Spawn::nullDevice)
            posix_spawn_file_actions_addopen(&actions_, place, "/dev/null", O_RDWR, 0);
        else
            posix_spawn_file_actions_adddup2(&actions_, source(descriptor), place);
    }

    /// The descriptor, or one like it that is none of the places: filling those would overwrite it.
    int source(int descriptor) {
        if (descriptor >= places_) return descriptor;
        Descriptor copy(fcntl(descriptor, F_DUPFD_CLOEXEC, places_));
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

    int places_;
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
    const Conditions conditions(descriptors);
    std::vector<std::string> words = arguments;
    words.insert(words.begin(), executable);
    pid_t child = -1;
    const int code = posix_spawn(&child, executable.c_str(), conditions.actions(), conditions.attributes(),
                                 pointers(words).data(), pointers(environment).data());
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
