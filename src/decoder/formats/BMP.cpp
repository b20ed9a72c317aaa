#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "decoder/formats/Bitmap.h"
#include "decoder/formats/LittleEndian.h"
#include "decoder/formats/Readers.h"
#include "decoder/picture/Layout.h"
#include "decoder/picture/PictureFile.h"
#include "decoder/picture/UprightPicture.h"
#include "imaging/DecodedPixels.h"

namespace quorvantis::decoder {

namespace {

constexpr std::size_t fileHeaderSize = 14;

}  // namespace

DecodedPixels readBMP(const PictureFile& file) {
    std::array<std::uint8_t, fileHeaderSize> fileHeader;
    file.read(0, fileHeader);
    const auto header = readBitmapHeader(file, fileHeaderSize);
    UprightPicture picture({.size = header.size,
                            .declared = {},
                            .layout = header.masks[3] != 0 ? Layout::rgba : Layout::rgbx,
                            .colours = header.colours});
    BitmapRows rows(file, header, littleEndian(fileHeader, 10, 4));
    std::vector<std::uint8_t> row(picture.rowSize());
    for (std::int64_t y = 0; y < header.size.height; ++y) {
        rows.read(y, row);
        picture.addRow(row);
    }
    return picture.finish();
}

}  // namespace quorvantis::decoder
