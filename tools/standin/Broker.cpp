#include "Broker.h"

#include <algorithm>
#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Installation.h"
#include "Terminal.h"
#include "json/JSON.h"
#include "json/JSONDocument.h"
#include "json/JSONWriter.h"
#include "support/HelperIO.h"

namespace quorvantis::standin {

std::string Broker::handle(std::string_view text) const {
    const auto document = JSONDocument::parse(text);
    const JSON request = document ? document->root() : JSON();
    const auto requestID = request["requestID"].string().value_or("");
    JSONWriter reply(Slashes::escaped);
    try {
        reply.beginObject();
        reply.members("version", 1, "requestID", requestID, "ok", true);
        run(request, reply);
        reply.endObject();
        return reply.take() + "\n";
    } catch (const std::exception& failure) {
        log("refused: " + std::string(failure.what()));
        JSONWriter refusal(Slashes::escaped);
        refusal.object("version", 1, "requestID", requestID, "ok", false, "error",
                       HelperIO::oneLine(failure.what()));
        return refusal.take() + "\n";
    }
}

void Broker::run(JSON request, JSONWriter& reply) const {
    checkCaller(request);
    const auto name = request["operation"].string().value_or("");
    log(std::string(*request["agent"].string()) + ": " + std::string(name));
    const auto operation = operations_.find(name);
    if (operation == operations_.end()) throw std::runtime_error("Unknown operation");
    operation->second(request, reply);
}

void Broker::checkCaller(JSON request) const {
    if (request["version"].integer() != 1) throw std::runtime_error("Unsupported protocol version");
    const auto isCaller = [&](const Installation& agent) {
        return request["agent"].string() == agent.identity.agent &&
               request["clientID"].string() == agent.identity.clientID &&
               request["credential"].string() == agent.identity.credential;
    };
    if (std::none_of(agents_.begin(), agents_.end(), isCaller))
        throw std::runtime_error("Quorvantis does not know this client or its credential");
}

}  // namespace quorvantis::standin
