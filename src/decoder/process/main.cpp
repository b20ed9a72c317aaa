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
[[noreturn]] void execDecoder(const char* format) {
    const auto self = quorvantis::platform::executablePath(getpid());
    if (!self) giveUp();
    std::string other = *self + "-" + format;
    const std::array<char*, 2> arguments = {other.data(), nullptr};
    execv(other.c_str(), arguments.data());
    giveUp();
}

}  // namespace

int main() {
    switch (format()) {
        case Format::png: run(readPNG);
        case Format::jpeg: run(readJPEG);
        case Format::bmp: run(readBMP);
        case Format::ico: run(readICO);
        case Format::gif: run(readGIF);
        case Format::webp: run(readWebP);
        case Format::jpeg2000: run(readJPEG2000);
        case Format::tiff: execDecoder("tiff");
        case Format::heif: execDecoder("heif");
    }
}
