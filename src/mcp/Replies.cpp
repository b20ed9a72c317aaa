#include "mcp/Replies.h"

namespace quorvantis::QuorvantisMCP {

bool failure(JSON id, int code, std::string_view message) {
    return HelperIO::writeLine("jsonrpc", "2.0", "id", id, "error",
                               jsonObject("code", code, "message", message));
}

bool notifyToolsListChanged() {
    return HelperIO::writeLine("jsonrpc", "2.0", "method", "notifications/tools/list_changed");
}

}  // namespace quorvantis::QuorvantisMCP
