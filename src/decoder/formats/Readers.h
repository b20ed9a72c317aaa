#pragma once

#include <cstdint>

#include "decoder/picture/PictureFile.h"
#include "imaging/DecodedPixels.h"

namespace quorvantis::decoder {

// One reader per format. Each decodes the first picture of the file, or gives up.

DecodedPixels readPNG(const PictureFile& file);
/// The PNG picture that starts at the position.
DecodedPixels readPNG(const PictureFile& file, std::uint64_t position);
DecodedPixels readJPEG(const PictureFile& file);
DecodedPixels readBMP(const PictureFile& file);
DecodedPixels readICO(const PictureFile& file);
DecodedPixels readGIF(const PictureFile& file);
DecodedPixels readWebP(const PictureFile& file);
DecodedPixels readTIFF(const PictureFile& file);
DecodedPixels readHEIF(const PictureFile& file);
DecodedPixels readJPEG2000(const PictureFile& file);

}  // namespace quorvantis::decoder
