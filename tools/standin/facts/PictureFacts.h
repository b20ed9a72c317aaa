#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace quorvantis::standin {

/// What the structures of a picture's file say of it, without decoding a pixel. Known of PNG, JPEG, GIF, TIFF
/// and WebP; of other files nothing is.
struct PictureFacts {
    std::optional<std::int64_t> bitsPerComponent;  // of the decoded picture: 8 where the file has a palette
    std::optional<bool> hasAlpha;                  // of the first frame; WebP tells of all together
    /// "RGB", "Gray", "CMYK" or "Lab": the names of the image decoder of macOS (kCGImagePropertyColorModel).
    std::optional<std::string> colorModel;
    /// The description of the embedded colour profile; of PNG, the name that the chunk gives to the profile
    /// (it need not be the same), or that of sRGB when the file says no more than that it is sRGB.
    std::optional<std::string> profileName;
    std::optional<std::int64_t> orientation;  // 1 to 8, as EXIF counts them; absent when the file says none
    std::optional<std::int64_t> frameCount;   // frames or pages, as far as they are begun
};

/// The file's content, or its start: what does not stand there is not found. A damaged file gives what can
/// be read, which may be wrong.
PictureFacts pictureFacts(std::span<const std::uint8_t> file);

/// The same of a file's first 64 MiB. Throws FileError.
PictureFacts pictureFactsOf(const std::string& path);

}  // namespace quorvantis::standin
