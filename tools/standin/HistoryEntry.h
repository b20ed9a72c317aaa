#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "ImageLibrary.h"
#include "json/JSONRecord.h"
#include "state/HistoryRecords.h"

namespace quorvantis::standin {

/// A history entry, and the summary of it that agents get.
struct HistoryEntry {
    HelperEntry entry;
    std::string kind;
    std::string preview;
    std::string detail;
    std::optional<std::string> sourceApplication;
    std::optional<std::string> text;
    std::optional<std::vector<std::string>> filePaths;

    static constexpr auto fields() {
        using M = HistoryEntry;
        return std::tuple(Field("entry", &M::entry), Field("kind", &M::kind), Field("preview", &M::preview),
                          Field("detail", &M::detail), Field("sourceApplication", &M::sourceApplication),
                          Field("text", &M::text), Field("filePaths", &M::filePaths));
    }
};

/// The entry of a text that is copied now.
HistoryEntry textEntry(std::string_view text);

/// The entries of the images, each as if its file had been copied when it was last modified.
std::vector<HistoryEntry> imageEntries(const ImageLibrary& library);

}  // namespace quorvantis::standin
