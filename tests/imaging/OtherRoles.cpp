#include "imaging/OtherRoles.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <set>
#include <unistd.h>

#include "harness/TemporaryFolder.h"
#include "imaging/AttachmentIdentity.h"
#include "support/Streams.h"

namespace quorvantis {

static bool inheritedNothing() {
    std::set<std::string> descriptors;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        if (const auto target = std::filesystem::read_symlink(entry); !target.string().starts_with("/proc"))
            descriptors.insert(entry.path().filename());
    struct sigaction action;
    sigset_t mask;
    sigaction(SIGPIPE, nullptr, &action);
    sigprocmask(SIG_SETMASK, nullptr, &mask);
    return descriptors == std::set<std::string>{"0", "1", "2", "3"} && *environ == nullptr &&
           std::filesystem::read_symlink("/proc/self/fd/0") == "/dev/null" &&
           std::filesystem::read_symlink("/proc/self/fd/2") == "/dev/null" && action.sa_handler == SIG_DFL &&
           sigisemptyset(&mask);
}

/// Leaves a file beside the picture and waits for that of another decoder.
static bool metAnother() {
    const auto folder = std::filesystem::read_symlink("/proc/self/fd/3").parent_path() / "meeting";
    std::filesystem::create_directory(folder);
    close(creat((folder / std::to_string(getpid())).c_str(), 0600));
    for (int attempt = 0; attempt < 1'000 && harness::itemsIn(folder) < 2; ++attempt) usleep(10'000);
    return harness::itemsIn(folder) >= 2;
}

int playDecoder() {
    std::array<char, 256> text;
    const std::string task(text.data(), static_cast<std::size_t>(pread(3, text.data(), text.size(), 0)));
    if (task.starts_with("say ")) writeStream(STDOUT_FILENO, task.substr(4));
    if (task == "hang up") close(STDOUT_FILENO);
    if (task.starts_with("hang")) sleep(100);
    while (task == "flood") writeStream(STDOUT_FILENO, answer);
    if (task == "touch") writeStream(open("/proc/self/fd/3", O_WRONLY), task);
    if (task == "touch" || (task == "meet" && metAnother()) || (task == "look" && inheritedNothing()))
        writeStream(STDOUT_FILENO, answer);
    return 0;
}

int playIdentifier(const std::string& patienceInMilliseconds, const std::vector<std::string>& paths) {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGUSR1);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    open("/dev/zero", O_RDONLY);
    const std::chrono::milliseconds patience(std::stol(patienceInMilliseconds));
    for (const auto& identity : HelperIO::attachmentIdentities(paths, patience))
        std::cout << (identity ? encodedRecord(*identity) : "none") << "\n";
    return 0;
}

}  // namespace quorvantis
