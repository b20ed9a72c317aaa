#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorvantis::standin {

/// The uniform type identifier of a picture file, told from its first bytes, or the whole of it; empty if
/// they are of no format that the decoder knows.
std::optional<std::string> pictureType(std::string_view bytes);
/// The same of the file at the path. Throws FileError.
std::optional<std::string> pictureTypeAt(const std::string& path);

/// The name by which users and agents know a picture file, in valid UTF-8: the file's own, or where that is
/// its SHA-256, a short one that tells the type.
std::string pictureName(const std::string& path, const std::string& sha256, std::string_view uti);

}  // namespace quorvantis::standin
