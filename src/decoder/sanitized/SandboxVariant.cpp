#include "decoder/SandboxVariant.h"

#include <array>
#include <seccomp.h>

namespace quorvantis::decoder {

// The address sanitizer reserves terabytes of addresses and looks at its own threads and stacks.
SandboxVariant sandboxVariant() {
    static const std::array calls = {
        SCMP_SYS(sigaltstack),
    };
    return {.limitsAddressSpace = false, .furtherCalls = calls};
}

}  // namespace quorvantis::decoder
