#pragma once

inline char*** _NSGetArgv() {
    return nullptr;
}
