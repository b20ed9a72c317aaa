#pragma once

namespace quorvantis::decoder {

/// Ends the process with nothing written: the picture cannot be decoded. A decoder serves one picture, so
/// that no failure has anything to clean up, nor a codec's error handler anywhere to return to.
[[noreturn]] void giveUp();

}  // namespace quorvantis::decoder
