#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>

#include "../json/Date.h"
#include "../json/JSONRecord.h"

namespace quorvantis {

/// The latest observation of an agent's prompt hook: the file "<agent>-hook-state.json" in
/// `HelperPaths::agents`. Written by prompt hooks; the server does not use it.
struct PromptHookObservation {
    std::string clientID;
    Date observedAt;
    std::int64_t attachmentCount = 0;
    std::int64_t referenceCount = 0;
    std::string outcome;  // the hook's own description of the result

    static constexpr auto fields() {
        using M = PromptHookObservation;
        return std::tuple(Field("clientID", &M::clientID), Field("observedAt", &M::observedAt),
                          Field("attachmentCount", &M::attachmentCount),
                          Field("referenceCount", &M::referenceCount), Field("outcome", &M::outcome));
    }

    /// Replaces the agent's observation with one made now. Errors are ignored. U+FFFD stands for
    /// what is not valid UTF-8.
    static void record(std::string_view clientID, std::string_view agent, std::int64_t attachmentCount,
                       std::int64_t referenceCount, std::string_view outcome);

    /// The path of an agent's observation.
    static std::string url(std::string_view agent);
};

}  // namespace quorvantis
