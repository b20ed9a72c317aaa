#pragma once

#include <string_view>

#include "decoder/picture/PictureFile.h"
#include "imaging/DecodedPixels.h"

namespace quorvantis::decoder {

/// The argument of a decoder for a picture's second try (see Limits).
inline constexpr std::string_view aloneArgument = "alone";

/// What a decoder's `main` does: enters the sandbox, reads the picture and writes its record to standard
/// output. Ends the process.
[[noreturn]] void run(DecodedPixels (*reader)(const PictureFile&), char** arguments);

}  // namespace quorvantis::decoder
