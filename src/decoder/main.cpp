#include "decoder/Format.h"
#include "decoder/GiveUp.h"
#include "decoder/Readers.h"
#include "decoder/Run.h"

using namespace quorvantis::decoder;

namespace {

Format format() {
    std::array<std::uint8_t, recognisedBytes> start;
    const auto size = PictureFile().readUpTo(0, start);
    const auto recognised = recognisedFormat(std::span(start).first(size));
    if (!recognised) giveUp();
    return *recognised;
}

}  // namespace

int main() {
    switch (format()) {
        case Format::png:
            run(readPNG);
        case Format::jpeg:
            run(readJPEG);
        case Format::bmp:
            run(readBMP);
        case Format::ico:
            run(readICO);
        case Format::gif:
            run(readGIF);
        default:
            giveUp();
    }
}
