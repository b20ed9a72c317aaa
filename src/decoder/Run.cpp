#include "decoder/Run.h"

#include <new>
#include <unistd.h>

#include "decoder/GiveUp.h"
#include "decoder/Sandbox.h"
#include "support/Streams.h"

namespace quorvantis::decoder {

void run(DecodedPixels (*reader)(const PictureFile&)) {
    std::set_new_handler(giveUp);
    enterSandbox();
    if (!writeStream(STDOUT_FILENO, reader(PictureFile()).record())) giveUp();
    _exit(0);
}

}  // namespace quorvantis::decoder
