#include "platform/Descriptor.h"

#include <unistd.h>

namespace quorvantis::platform {

Descriptor::~Descriptor() {
    if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace quorvantis::platform
