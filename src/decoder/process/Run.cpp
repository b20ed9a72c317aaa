#include "decoder/process/Run.h"

#include <malloc.h>
#include <new>
#include <unistd.h>

#include "decoder/picture/GiveUp.h"
#include "decoder/picture/PictureFile.h"
#include "decoder/process/Limits.h"
#include "decoder/process/Sandbox.h"
#include "imaging/DecodedPixels.h"
#include "support/Streams.h"

namespace quorvantis::decoder {

void run(DecodedPixels (*reader)(const PictureFile&), char** arguments) {
    std::set_new_handler(giveUp);
    mallopt(M_ARENA_MAX, 1);  // an arena per thread would need /proc, which the sandbox forbids
    const PictureFile file;
    const bool alone = arguments[0] && arguments[1] && arguments[1] == aloneArgument;
    enterSandbox(limits(file.size(), alone));
    if (!writeStream(STDOUT_FILENO, reader(file).record())) giveUp();
    _exit(0);
}

}  // namespace quorvantis::decoder
