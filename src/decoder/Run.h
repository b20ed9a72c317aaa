#pragma once

#include "decoder/PictureFile.h"
#include "decoder/Sandbox.h"
#include "imaging/DecodedPixels.h"

namespace quorvantis::decoder {

/// Enters the sandbox, reads the picture and writes its record to standard output. Ends the process.
[[noreturn]] void run(DecodedPixels (*reader)(const PictureFile&), Threads threads = Threads::none);

}  // namespace quorvantis::decoder
