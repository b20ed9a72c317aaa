#include "Log.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <string_view>

namespace quorvantis::standin {

void log(std::string_view line) {
    const std::time_t now = std::time(nullptr);
    std::tm local;
    std::array<char, 16> time;
    std::strftime(time.data(), time.size(), "%H:%M:%S", localtime_r(&now, &local));
    std::printf("%s  %.*s\n", time.data(), static_cast<int>(line.size()), line.data());
    std::fflush(stdout);
}

}  // namespace quorvantis::standin
