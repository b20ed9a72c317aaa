#include "state/PromptHookObservation.h"

#include <cstdint>
#include <string>
#include <string_view>

#include "integration/HelperPaths.h"
#include "json/Date.h"
#include "json/JSONFiles.h"
#include "support/Paths.h"
#include "support/UTF8.h"

namespace quorvantis {

void PromptHookObservation::record(std::string_view clientID, std::string_view agent,
                                   std::int64_t attachmentCount, std::int64_t referenceCount,
                                   std::string_view outcome) {
    HelperIO::writeAdvisoryJSON(PromptHookObservation{.clientID = repairedUTF8(clientID),
                                                      .observedAt = Date::now(),
                                                      .attachmentCount = attachmentCount,
                                                      .referenceCount = referenceCount,
                                                      .outcome = repairedUTF8(outcome)},
                                url(agent));
}

std::string PromptHookObservation::url(std::string_view agent) {
    return joinedPath(HelperPaths().agents, std::string(agent) + "-hook-state.json");
}

}  // namespace quorvantis
