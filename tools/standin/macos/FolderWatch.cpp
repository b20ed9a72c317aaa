#include "FolderWatch.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace quorvantis::standin {

using Clock = std::chrono::steady_clock;

struct FolderWatch::State {
    Clock::time_point lastLook = Clock::now();
    bool hasFolders = false;
};

FolderWatch::FolderWatch() : state_(std::make_unique<State>()) {}

FolderWatch::~FolderWatch() = default;

bool FolderWatch::add(const std::vector<std::string>& folders) {
    state_->hasFolders = !folders.empty();
    return false;
}

int FolderWatch::descriptor() const {
    return -1;
}

bool FolderWatch::take() {
    if (!state_->hasFolders || Clock::now() - state_->lastLook < std::chrono::seconds(1)) return false;
    state_->lastLook = Clock::now();
    return true;
}

}  // namespace quorvantis::standin
