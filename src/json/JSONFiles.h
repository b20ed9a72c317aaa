#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "../support/Files.h"
#include "../support/Paths.h"
#include "JSONRecord.h"

namespace quorvantis::HelperIO {

/// Reads a record from a JSON file. Throws FileError or DecodingError.
template <Record R>
R readJSON(const std::string& path) {
    return decodedRecord<R>(readFile(path));
}

/// Replaces the file atomically, then sets its mode, which must not be negative. Throws FileError; or, once
/// the file is in place, HelperFailure `configuration` if the mode cannot be set.
void writeProtected(const std::string& path, std::string_view content, std::int16_t permissions);

/// Writes a record's JSON in the same way, after creating missing folders. May also throw EncodingError.
template <class T>
void writeJSON(const T& record, const std::string& path, std::int16_t permissions = 0600) {
    makeFolders(parentPath(path));
    writeProtected(path, encodedRecord(record), permissions);
}

/// Like `writeJSON`, for records that only inform the desktop application. Errors are dropped on purpose:
/// they must not end a session or stop a prompt.
template <class T>
void writeAdvisoryJSON(const T& record, const std::string& path) noexcept {
    try {
        writeJSON(record, path);
    } catch (const std::exception&) {}
}

}  // namespace quorvantis::HelperIO
