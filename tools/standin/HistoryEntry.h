#pragma once

#include <optional>
#include <string>
#include <tuple>
#include <vector>

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

}  // namespace quorvantis::standin
