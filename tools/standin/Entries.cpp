#include "Entries.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "HistoryEntry.h"
#include "json/Date.h"
#include "json/UUID.h"
#include "state/HistoryRecords.h"
#include "support/Characters.h"
#include "support/HelperIO.h"
#include "support/Hexadecimal.h"
#include "support/Paths.h"
#include "support/UTF8.h"

namespace quorvantis::standin {

namespace {

constexpr std::size_t previewSize = 80;  // bytes, and the rest of the last character
constexpr std::string_view fileScheme = "file://";

std::string preview(std::string_view text) {
    std::size_t size = std::min(text.size(), previewSize);
    while (size < text.size() && (text[size] & 0xC0) == 0x80) ++size;
    std::string line(text.substr(0, size));
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
    return size < text.size() ? line + "…" : line;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view spaces = " \t\r\n";
    const auto start = std::min(text.find_first_not_of(spaces), text.size());
    text.remove_prefix(start);
    return text.substr(0, text.find_last_not_of(spaces) + 1);
}

bool isLink(std::string_view text) {
    constexpr std::array<std::string_view, 3> schemes = {"https://", "http://", "ftp://"};
    return text.find_first_of(" \t\r\n") == text.npos &&
           std::any_of(schemes.begin(), schemes.end(), [&](std::string_view scheme) {
               return text.starts_with(scheme) && text.size() > scheme.size();
           });
}

std::string hostOf(std::string_view link) {
    link.remove_prefix(link.find("://") + 3);
    link = link.substr(0, link.find_first_of("/?#"));
    return std::string(link.substr(link.find('@') == link.npos ? 0 : link.find('@') + 1));
}

/// The lines of text/uri-list (RFC 2483) when all are URLs of files; else none.
std::vector<std::string_view> fileURLs(std::string_view text) {
    std::vector<std::string_view> urls;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        const auto line = trimmed(text.substr(start, end - start));
        start = end + 1;
        if (line.empty() || line.starts_with('#')) continue;
        if (!line.starts_with(fileScheme)) return {};
        urls.push_back(line);
    }
    return urls;
}

std::string pathOf(std::string_view url) {
    url.remove_prefix(fileScheme.size());
    url.remove_prefix(std::min(url.find('/'), url.size()));  // a host
    std::string path;
    for (std::size_t i = 0; i < url.size(); ++i) {
        const bool hasDigits = url[i] == '%' && i + 2 < url.size();
        const auto high = hasDigits ? hexadecimalValue(url[i + 1]) : std::nullopt;
        const auto low = hasDigits ? hexadecimalValue(url[i + 2]) : std::nullopt;
        path += high && low ? static_cast<char>(*high << 4 | *low) : url[i];
        if (high && low) i += 2;
    }
    return repairedUTF8(path);
}

HelperClipboardItem item(std::int64_t index, const HelperRepresentation& representation) {
    return {.id = UUID::random(), .index = index, .representations = {representation}};
}

HelperRepresentation inlined(const std::string& uti, std::string_view text) {
    return {.id = UUID::random(),
            .uti = uti,
            .byteCount = static_cast<std::int64_t>(text.size()),
            .sha256 = HelperIO::sha256(text),
            .inlineText = std::string(text),
            .isOriginalRepresentation = true};
}

HistoryEntry entryNow(const std::string& kind, std::vector<HelperClipboardItem> items) {
    return {.entry = {.id = UUID::random(),
                      .createdAt = Date::now(),
                      .primaryKind = kind,
                      .items = std::move(items)},
            .kind = kind};
}

HistoryEntry filesEntry(const std::vector<std::string_view>& urls) {
    std::vector<HelperClipboardItem> items;
    for (const auto url : urls)
        items.push_back(item(static_cast<std::int64_t>(items.size()), inlined("public.file-url", url)));
    HistoryEntry entry = entryNow("file", std::move(items));
    auto& paths = entry.filePaths.emplace();
    std::string names;
    for (const auto url : urls) {
        paths.push_back(pathOf(url));
        names += (names.empty() ? "" : ", ") + lastPathComponent(paths.back());
    }
    entry.preview = preview(names);
    entry.detail = urls.size() == 1 ? "1 file" : std::to_string(urls.size()) + " files";
    return entry;
}

}  // namespace

HistoryEntry textEntry(std::string_view text) {
    if (const auto urls = fileURLs(text); !urls.empty()) return filesEntry(urls);
    const auto link = trimmed(text);
    HistoryEntry entry = isLink(link) ? entryNow("url", {item(0, inlined("public.url", link))})
                                      : entryNow("text", {item(0, inlined("public.utf8-plain-text", text))});
    entry.text = entry.entry.items[0].representations[0].inlineText;
    entry.preview = preview(*entry.text);
    entry.detail = isLink(link) ? "Link to " + hostOf(link)
                                : "Text, " + std::to_string(characterCount(text)) + " characters";
    return entry;
}

HistoryEntry pictureEntry(const UUID& id, Date createdAt, const DecodedPicture& picture) {
    const auto& [sha256, pixelHash, width, height] = picture.identity;
    const HelperImageMetadata metadata = {.pixelWidth = *width,
                                          .pixelHeight = *height,
                                          .pixelHash = pixelHash,
                                          .originalUTI = picture.uti,
                                          .isOriginalFile = true,
                                          .isBitExact = true};
    const HelperRepresentation representation = {.id = id,
                                                 .uti = picture.uti,
                                                 .byteCount = picture.byteCount,
                                                 .sha256 = sha256,
                                                 .storagePath = picture.path,
                                                 .isOriginalRepresentation = true,
                                                 .imageMetadata = metadata};
    const HelperClipboardItem only = {.id = id, .index = 0, .representations = {representation}};
    return {.entry = {.id = id, .createdAt = createdAt, .primaryKind = "image", .items = {only}},
            .kind = "image",
            .preview = picture.name,
            .detail = "Image, " + std::to_string(*width) + " x " + std::to_string(*height) + ", " +
                      std::to_string(picture.byteCount) + " bytes",
            .filePaths = std::vector{repairedUTF8(picture.path)}};
}

}  // namespace quorvantis::standin
