#pragma once

#include <string>

namespace quorvantis::bench {

/// Writes a picture like a photograph, smooth with some grain, as JPEG of quality 90, baseline, 4:2:0.
void writeJPEG(const std::string& path, int width, int height);

/// The same as PNG, RGB, not interlaced.
void writePNG(const std::string& path, int width, int height);

/// Decodes a picture of any of JPEG, PNG, WebP, HEIC and AVIF with its library alone, or reads another file,
/// and throws the pixels away. The end of the path tells the format.
void decode(const std::string& path);

}  // namespace quorvantis::bench
