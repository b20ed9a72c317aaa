#include "support/HelperIO.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <unistd.h>

#include "platform/SHA256.h"
#include "support/Files.h"
#include "support/Hexadecimal.h"
#include "support/Streams.h"
#include "support/UTF8.h"

namespace quorvantis::HelperIO {

namespace {

void update(platform::SHA256& hash, std::string_view bytes) {
    hash.update(std::as_bytes(std::span(bytes)));
}

}  // namespace

std::string oneLine(std::string_view text) {
    std::string line = repairedUTF8(text);
    for (std::size_t i = 0; i < line.size(); ++i)
        if (static_cast<unsigned char>(line[i]) < 0x20 || line[i] == 0x7F) line.replace(i, 1, "\uFFFD");
    return line;
}

void error(std::string_view message) {
    writeStream(STDERR_FILENO, oneLine(message).append("\n"));
}

std::string shellQuoted(std::string_view text) {
    std::string quoted = "'";
    for (const char character : text) {
        if (character == '\'')
            quoted += "'\\''";
        else
            quoted += character;
    }
    return quoted += '\'';
}

std::string sha256(std::string_view data) {
    platform::SHA256 hash;
    update(hash, data);
    return hexadecimal(hash.finish());
}

std::string sha256FileAt(const std::string& path) {
    platform::SHA256 hash;
    readFile(path, [&](std::string_view piece) { update(hash, piece); });
    return hexadecimal(hash.finish());
}

}  // namespace quorvantis::HelperIO
