#include "imaging/linux/DecoderProcess.h"

#include <array>
#include <csignal>
#include <errno.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/Executables.h"
#include "support/Paths.h"

namespace quorvantis {

namespace {

using platform::Descriptor;

constexpr int pictureDescriptor = 3;  // where the decoder expects it

/// Beside the running executable, or where an installation keeps it.
std::string decoderPath() {
    const std::string folder = parentPath(platform::executablePath(getpid()).value_or("/"));
    std::string beside = joinedPath(folder, "quorvantis-image-decoder");
    if (access(beside.c_str(), X_OK) == 0) return beside;
    return joinedPath(folder, "../libexec/quorvantis/quorvantis-image-decoder");
}

/// The decoder gets the picture, the pipe and nothing else: never a stream of the session.
class FileActions {
  public:
    FileActions(const Descriptor& picture, const Descriptor& pipe) {
        posix_spawn_file_actions_init(&actions_);
        // In this order, for the pipe may have the number that the picture is to get.
        posix_spawn_file_actions_adddup2(&actions_, pipe.get(), STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions_, picture.get(), pictureDescriptor);
        posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addclosefrom_np(&actions_, pictureDescriptor + 1);
    }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }

    const posix_spawn_file_actions_t* get() const { return &actions_; }

  private:
    posix_spawn_file_actions_t actions_;
};

/// All signals as a program expects them at its start.
class Signals {
  public:
    Signals() {
        sigset_t signals;
        posix_spawnattr_init(&attributes_);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&attributes_, &signals);
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes_, &signals);
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;
    ~Signals() { posix_spawnattr_destroy(&attributes_); }

    const posix_spawnattr_t* get() const { return &attributes_; }

  private:
    posix_spawnattr_t attributes_;
};

std::optional<pid_t> spawn(const Descriptor& picture, const Descriptor& pipe) {
    const FileActions actions(picture, pipe);
    const Signals signals;
    std::string path = decoderPath();
    const std::array<char*, 2> arguments = {path.data(), nullptr};
    char* const noEnvironment = nullptr;
    pid_t process = -1;
    if (posix_spawn(&process, path.c_str(), actions.get(), signals.get(), arguments.data(), &noEnvironment) !=
        0)
        return std::nullopt;
    return process;
}

}  // namespace

std::optional<DecoderProcess> DecoderProcess::start(const Descriptor& file) {
    std::array<int, 2> ends;
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
    Descriptor output(ends[0]);
    const Descriptor input(ends[1]);
    const auto process = spawn(file, input);
    if (!process) return std::nullopt;
    return DecoderProcess(*process, std::move(output));
}

DecoderProcess::DecoderProcess(pid_t process, Descriptor output)
    : process_(process), output_(std::move(output)) {}

DecoderProcess::DecoderProcess(DecoderProcess&& other) noexcept
    : process_(std::exchange(other.process_, -1)),
      output_(std::move(other.output_)),
      record_(std::move(other.record_)) {}

DecoderProcess::~DecoderProcess() {
    if (process_ < 0) return;
    kill(process_, SIGKILL);  // it has nothing more to say
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) continue;
}

bool DecoderProcess::readSome() {
    std::array<char, 128> buffer;
    const ssize_t count = read(output_.get(), buffer.data(), buffer.size());
    if (count < 0) return errno == EINTR;
    record_.append(buffer.data(), static_cast<std::size_t>(count));
    return count > 0 && record_.size() <= longestDecodedPixelsRecord;
}

}  // namespace quorvantis
