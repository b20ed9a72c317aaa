#include <array>
#include <cstdint>
#include <string>
#include <unistd.h>

#include "decoder/formats/Format.h"
#include "decoder/formats/Readers.h"
#include "decoder/picture/GiveUp.h"
#include "decoder/process/Run.h"
#include "platform/Process.h"

using namespace quorvantis::decoder;

namespace {

Format format() {
    std::array<std::uint8_t, recognisedBytes> start;
    const auto size = PictureFile().readUpTo(0, start);
    const auto recognised = recognisedFormat(std::span(start).first(size));
    if (!recognised) giveUp();
    return *recognised;
}

/// Runs the decoder for a format whose library takes long to load: a separate program in the same folder.
[[noreturn]] void execDecoder(const char* format, char** arguments) {
    const auto self = quorvantis::platform::executablePath(getpid());
    if (!self) giveUp();
    const std::string other = *self + "-" + format;
    execv(other.c_str(), arguments);
    giveUp();
}

}  // namespace

int main(int, char** arguments) {
    switch (format()) {
        case Format::png: run(readPNG, arguments);
        case Format::jpeg: run(readJPEG, arguments);
        case Format::bmp: run(readBMP, arguments);
        case Format::ico: run(readICO, arguments);
        case Format::gif: run(readGIF, arguments);
        case Format::webp: run(readWebP, arguments);
        case Format::jpeg2000: run(readJPEG2000, arguments);
        case Format::tiff: execDecoder("tiff", arguments);
        case Format::heif: execDecoder("heif", arguments);
    }
}
