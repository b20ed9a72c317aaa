#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "json/JSONRecord.h"
#include "support/Files.h"
#include "support/Paths.h"

namespace quorvantis::HelperIO {

/// Reads a record from a JSON file. Throws FileError or DecodingError.
template <Record R>
R readJSON(const std::string& path) {
    return decodedRecord<R>(readFile(path));
}

/// Replaces the file in one step and then sets its mode, which must not be negative. Throws FileError, and
/// HelperFailure `configuration` when the mode cannot be set: the file is in place then.
void writeProtected(const std::string& path, std::string_view content, std::int16_t permissions);

/// The same with a record's JSON; makes the folders that are missing. Throws EncodingError besides.
template <class T>
void writeJSON(const T& record, const std::string& path, std::int16_t permissions = 0600) {
    makeFolders(parentPath(path));
    writeProtected(path, encodedRecord(record), permissions);
}

/// The same for advisory records, which tell the desktop application what goes on: every failure is dropped,
/// since no session and no prompt is worth losing over one.
template <class T>
void writeAdvisoryJSON(const T& record, const std::string& path) noexcept {
    try {
        writeJSON(record, path);
    } catch (const std::exception&) {}
}

}  // namespace quorvantis::HelperIO
