#include "mcp/Replies.h"

#include <string>
#include <string_view>
#include <unistd.h>

#include "json/JSON.h"
#include "json/JSONWriter.h"
#include "support/Streams.h"

namespace quorvantis {

bool HelperIO::writeLine(std::string json) {
    return writeStream(STDOUT_FILENO, json.append("\n"));
}

bool QuorvantisMCP::failure(JSON id, int code, std::string_view message) {
    return writeMessage("id", id, "error", jsonObject("code", code, "message", message));
}

bool QuorvantisMCP::notifyToolsListChanged() {
    return writeMessage("method", "notifications/tools/list_changed");
}

}  // namespace quorvantis
