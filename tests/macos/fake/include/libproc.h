#pragma once

#include <cstdint>

#define PROC_PIDPATHINFO_MAXSIZE 4096

inline int proc_pidpath(int, void*, std::uint32_t) {
    return 0;
}
