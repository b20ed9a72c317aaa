#include <csignal>
#include <exception>
#include <sys/resource.h>

#include "broker/BrokerIdentity.h"
#include "cli/ArgumentReader.h"
#include "integration/CredentialValidator.h"
#include "mcp/Session.h"
#include "platform/Process.h"
#include "support/HelperFailure.h"
#include "support/HelperIO.h"
#include "support/Paths.h"
#include "support/Streams.h"

using namespace quorvantis;

namespace {

BrokerIdentity validatedIdentity(const ArgumentReader& arguments) {
    const auto usageError = HelperFailure::invalidArguments("Expected serve with agent identity.");
    if (arguments.values.empty() || arguments.values.front() != "serve") throw usageError;
    const auto agent = arguments.value("--agent");
    const auto clientID = arguments.value("--client-id");
    const auto credentialPath = arguments.value("--credential-file");
    if (!agent || !clientID || !credentialPath) throw usageError;
    const auto validated = CredentialValidator().validate(*agent, *clientID, absolutePath(*credentialPath));
    return {.agent = *agent, .clientID = *clientID, .credential = validated.token};
}

}  // namespace

int main(int count, char** arguments) {
    reserveStandardStreams();
    const rlimit none = {.rlim_cur = 0, .rlim_max = 0};
    setrlimit(RLIMIT_CORE, &none);  // a core file would hold the credential
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);  // a write beyond the limit of file sizes fails instead
    std::signal(SIGCHLD, SIG_DFL);  // if the parent left it ignored, waitpid would fail
    platform::keepFreedMemory();
    try {
        QuorvantisMCP::serve(
            validatedIdentity(ArgumentReader{{arguments + (count > 0 ? 1 : 0), arguments + count}}));
        return 0;
    } catch (const std::exception& failure) {
        HelperIO::error(failure.what());
        return 1;
    }
}
