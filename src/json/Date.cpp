#include "json/Date.h"

#include <chrono>
#include <cstdint>

namespace quorvantis {

using namespace std::chrono;

static Date toDate(system_clock::time_point time) {
    constexpr sys_days referenceDate = 2001y / January / 1;
    return {duration<double>(time - referenceDate).count()};
}

Date Date::now() {
    return toDate(system_clock::now());
}

Date Date::sinceEpoch(std::int64_t time) {
    return toDate(system_clock::time_point(seconds(time)));
}

}  // namespace quorvantis
