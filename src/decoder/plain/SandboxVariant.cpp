#include "decoder/SandboxVariant.h"

namespace quorvantis::decoder {

SandboxVariant sandboxVariant() {
    return {.limitsAddressSpace = true, .furtherCalls = {}};
}

}  // namespace quorvantis::decoder
