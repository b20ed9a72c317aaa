#pragma once

#include <cstdint>

#define PROC_PIDPATHINFO_MAXSIZE 4096

int proc_pidpath(int process, void* buffer, std::uint32_t size);
