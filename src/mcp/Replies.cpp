#include "mcp/Replies.h"

#include <string>
#include <string_view>
#include <unistd.h>

#include "json/JSON.h"
#include "json/JSONWriter.h"
#include "support/Streams.h"

namespace quorvantis {

void HelperIO::writeLine(std::string json) {
    if (!writeStream(STDOUT_FILENO, json.append("\n"))) breakOutput(STDOUT_FILENO);
}

void QuorvantisMCP::failure(JSON id, int code, std::string_view message) {
    writeMessage("id", id, "error", jsonObject("code", code, "message", message));
}

void QuorvantisMCP::notifyToolsListChanged() {
    writeMessage("method", "notifications/tools/list_changed");
}

}  // namespace quorvantis
