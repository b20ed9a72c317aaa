#include <libheif/heif.h>

#include "decoder/formats/Readers.h"
#include "decoder/process/Run.h"

int main(int, char** arguments) {
    // Loads codecs that are plugins, which the sandbox would forbid. It may also fail for want of a plugin
    // that this picture does not need, or where all codecs are built in.
    static_cast<void>(heif_init(nullptr));
    quorvantis::decoder::run(quorvantis::decoder::readHEIF, arguments);
}
