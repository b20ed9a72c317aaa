#pragma once

namespace quorvantis::decoder {

/// Ends the process without output because the picture cannot be decoded. A decoder process serves a single
/// picture, so failures need no clean-up, and the error handlers of codecs need not return.
///
/// fuzz/pictures.cpp has another, which throws: destructors free whatever a reader holds when it gives up.
[[noreturn]] void giveUp();

}  // namespace quorvantis::decoder
