#include "FolderWatch.h"

#include <array>
#include <memory>
#include <set>
#include <string>
#include <sys/inotify.h>
#include <unistd.h>
#include <vector>

#include "platform/Descriptors.h"

namespace quorvantis::standin {

struct FolderWatch::State {
    platform::Descriptor events{inotify_init1(IN_NONBLOCK | IN_CLOEXEC)};
    std::set<int> watches;
};

FolderWatch::FolderWatch() : state_(std::make_unique<State>()) {}

FolderWatch::~FolderWatch() = default;

bool FolderWatch::add(const std::vector<std::string>& folders) {
    constexpr auto changes =
        IN_CLOSE_WRITE | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_ONLYDIR;
    bool hasNew = false;
    for (const std::string& folder : folders) {
        const int watch = inotify_add_watch(state_->events.get(), folder.c_str(), changes);
        if (watch >= 0 && state_->watches.insert(watch).second) hasNew = true;
    }
    return hasNew;
}

int FolderWatch::descriptor() const {
    return state_->events.get();
}

bool FolderWatch::take() {
    std::array<char, 65536> events;
    bool hasChanged = false;
    while (read(state_->events.get(), events.data(), events.size()) > 0) hasChanged = true;
    return hasChanged;
}

}  // namespace quorvantis::standin
