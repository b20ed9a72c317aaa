#include "support/Date.h"

#include <chrono>

namespace quorvantis {

Date Date::now() {
    using namespace std::chrono;
    constexpr sys_days referenceDate = 2001y / January / 1;
    return {duration<double>(system_clock::now() - referenceDate).count()};
}

}  // namespace quorvantis
