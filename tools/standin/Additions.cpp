#include "Additions.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <errno.h>
#include <fcntl.h>
#include <optional>
#include <stdexcept>
#include <stdlib.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "Entries.h"
#include "History.h"
#include "HistoryEntry.h"
#include "PictureType.h"
#include "imaging/AttachmentIdentity.h"
#include "json/CodingErrors.h"
#include "json/Date.h"
#include "json/JSONDocument.h"
#include "json/JSONRecord.h"
#include "json/UUID.h"
#include "platform/Descriptors.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/Streams.h"
#include "support/UTF8.h"

namespace quorvantis::standin {

namespace {

constexpr std::size_t maximumInput = 256 << 20;  // bytes

/// A file in the folder of pictures, under a name that begins with a dot. The destructor removes it, unless
/// it was moved.
class NewPicture {
  public:
    NewPicture(const std::string& folder, std::string_view bytes) : path_(joinedPath(folder, ".XXXXXX")) {
        makeFolders(folder);
        chmod(folder.c_str(), 0700);
        const platform::Descriptor file(mkostemp(path_.data(), O_CLOEXEC));
        if (!file || !writeStream(file.get(), bytes))
            throw std::runtime_error(folder + ": " + FileError::system(errno).what());
    }
    NewPicture(const NewPicture&) = delete;
    NewPicture& operator=(const NewPicture&) = delete;
    ~NewPicture() { unlink(path_.c_str()); }

    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

void apply(const CopyHints& hints, HistoryEntry& entry) {
    if (hints.kind) entry.kind = entry.entry.primaryKind = repairedUTF8(*hints.kind);
    if (hints.source) entry.sourceApplication = repairedUTF8(*hints.source);
}

/// Returns false when the bytes are no picture.
bool addPicture(History& history, const std::string& bytes, const CopyHints& hints) {
    const auto uti = pictureType(bytes);
    if (!uti) return false;
    const NewPicture file(history.pictureFolder(), bytes);
    const auto identity = HelperIO::attachmentIdentity(file.path());
    if (!identity.pixelHash) return false;
    const std::string place = joinedPath(history.pictureFolder(), identity.sha256);
    HistoryEntry entry = pictureEntry(UUID::random(), Date::now(),
                                      {.path = place,
                                       .name = pictureName(place, identity.sha256, *uti),
                                       .uti = *uti,
                                       .byteCount = static_cast<std::int64_t>(bytes.size()),
                                       .identity = identity});
    apply(hints, entry);
    history.addCopy(std::move(entry), file.path());
    return true;
}

/// Where each line of the text is a record, as `exportEntries` writes it: the line that is not. Else empty.
std::string firstWrongLine(std::string_view text) {
    bool isLineByLine = false;
    for (std::size_t start = 0, number = 1; start < text.size(); ++number) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        std::string_view line = text.substr(start, end - start);
        start = end + 1;
        const auto first = line.find_first_not_of(" [");
        const auto last = line.find_last_not_of(" ,]\r");
        if (first == line.npos || last == line.npos || first > last) continue;
        line = line.substr(first, last + 1 - first);
        if (JSONDocument::parse(line))
            isLineByLine = true;
        else
            return isLineByLine ? "line " + std::to_string(number) + ": " : "";
    }
    return "";
}

}  // namespace

void addCopy(History& history, const std::string& bytes, const CopyHints& hints) {
    if (bytes.empty()) throw std::runtime_error("There is nothing to add.");
    if (addPicture(history, bytes, hints)) return;
    if (!isValidUTF8(bytes))
        throw std::runtime_error("What to add is neither a picture that can be decoded nor text in UTF-8.");
    HistoryEntry entry = textEntry(bytes);
    apply(hints, entry);
    history.addCopy(std::move(entry));
}

std::string standardInput() {
    std::string content;
    std::array<char, 65536> buffer;
    for (;;) {
        const ssize_t count = read(STDIN_FILENO, buffer.data(), buffer.size());
        if (count == 0) return content;
        if (count < 0 && errno != EINTR)
            throw std::runtime_error("Standard input: " + std::string(FileError::system(errno).what()));
        if (count > 0) content.append(buffer.data(), static_cast<std::size_t>(count));
        if (content.size() > maximumInput)
            throw std::runtime_error("Standard input: More than 256 MiB are no copy.");
    }
}

std::size_t importEntries(History& history, const std::string& path) {
    const auto fail = [&](const std::string& place, const char* reason) {
        throw std::runtime_error(path + ": " + place + reason);
    };
    std::vector<HistoryEntry> entries;
    try {
        const std::string text = readFile(path);
        try {
            entries = decodedRecord<std::vector<HistoryEntry>>(text);
        } catch (const DecodingError& failure) {
            const std::string& key = failure.path();
            fail(key.empty() ? firstWrongLine(text) : key + ": ", failure.what());
        }
    } catch (const FileError& failure) {
        fail("", failure.what());
    }
    return history.addAll(entries);
}

void exportEntries(History& history) {
    const char* separator = "[\n";
    history.forEach([&](const HistoryEntry& entry) {
        std::printf("%s%s", separator, encodedRecord(entry).c_str());
        separator = ",\n";
    });
    std::printf("%s]\n", history.entryCount() == 0 ? "[" : "\n");
}

}  // namespace quorvantis::standin
