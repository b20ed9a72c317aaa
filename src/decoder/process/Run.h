#pragma once

#include "decoder/picture/PictureFile.h"
#include "imaging/DecodedPixels.h"

namespace quorvantis::decoder {

/// Enters the sandbox, reads the picture and writes its record to standard output. Ends the process.
[[noreturn]] void run(DecodedPixels (*reader)(const PictureFile&));

}  // namespace quorvantis::decoder
