#pragma once

#include <span>

namespace quorvantis::decoder {

/// What the sandbox of a sanitizer build does differently: one source of the two is built.
struct SandboxVariant {
    bool limitsAddressSpace;
    std::span<const int> furtherCalls;  // system calls allowed besides those of the decoders
};

SandboxVariant sandboxVariant();

}  // namespace quorvantis::decoder
